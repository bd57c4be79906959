#include "mox/json/ProblemReport.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

using namespace Mox::Host;

namespace {

TEST(ProblemReport, EveryFormHoldsTheSame)
{
    const std::vector<Problem> problems = {
        {Severity::Error, "unknown-port", {"a \"b\".xml", 3, "n", "in_x", 7}, "no such port"},
        {Severity::Warning, "dead-node", {}, "bytes \xff that\nare no UTF-8"},
    };
    const std::string json = FormatProblemsAsJson(problems);
    const std::string sarif = FormatProblemsAsSarif(problems, "1.2");
    EXPECT_TRUE(nlohmann::json::accept(json));
    EXPECT_TRUE(nlohmann::json::accept(sarif));
    ExpectGolden("json/report.txt", FormatProblemsAsText(problems) + json + sarif);
    EXPECT_EQ(FormatProblemsAsText({}), "");
}

} // namespace
