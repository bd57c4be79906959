#include "mox/check/ProblemReport.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

using namespace Mox::Host;

namespace {

const std::vector<Problem> problems = {
    {Severity::Error, "unknown-port", {"a \"b\".xml", 3, "n", "in_x", 7}, "no such port"},
    {Severity::Warning, "dead-node", {"", 0, "", ""}, "bytes \xff that\nare no UTF-8"},
};

TEST(ProblemReport, TextIsWhatCompilersPrint)
{
    EXPECT_EQ(FormatProblemsAsText(problems),
              "a \"b\".xml:3:7: error: node \"n\": port \"in_x\": no such port [unknown-port]\n"
              "warning: bytes \xff that are no UTF-8 [dead-node]\n");
    EXPECT_EQ(FormatProblemsAsText({}), "");
}

TEST(ProblemReport, JsonAndSarifHoldTheSame)
{
    const auto json = nlohmann::json::parse(FormatProblemsAsJson(problems));
    ASSERT_EQ(json.size(), 2u);
    EXPECT_EQ(json[0], (nlohmann::json{{"severity", "error"},
                                       {"rule", "unknown-port"},
                                       {"file", "a \"b\".xml"},
                                       {"line", 3},
                                       {"column", 7},
                                       {"node", "n"},
                                       {"port", "in_x"},
                                       {"message", "no such port"}}));
    EXPECT_FALSE(json[1].contains("file"));

    const auto sarif = nlohmann::json::parse(FormatProblemsAsSarif(problems, "1.2"));
    EXPECT_EQ(sarif["version"], "2.1.0");
    const auto& run = sarif["runs"][0];
    EXPECT_EQ(run["tool"]["driver"]["rules"],
              (nlohmann::json{{{"id", "dead-node"}}, {{"id", "unknown-port"}}}));
    const auto& location = run["results"][0]["locations"][0];
    EXPECT_EQ(location["physicalLocation"]["artifactLocation"]["uri"], "a%20%22b%22.xml");
    EXPECT_EQ(location["physicalLocation"]["region"],
              (nlohmann::json{{"startLine", 3}, {"startColumn", 7}}));
    EXPECT_EQ(location["logicalLocations"][0]["fullyQualifiedName"], "n.in_x");
    EXPECT_EQ(run["results"][1]["level"], "warning");
}

} // namespace
