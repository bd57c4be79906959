#pragma once

#include "mox/host/Problem.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Formats problems as compilers do, "file:line:column: error: message [rule]", one per line.
std::string FormatProblemsAsText(const std::vector<Problem>& problems);

/// Formats problems as a JSON array of objects with severity, rule, file, line, column, node, port
/// and message; unknown parts of the location are omitted.
std::string FormatProblemsAsJson(const std::vector<Problem>& problems);

/// Formats problems as a SARIF 2.1.0 log with one run, for build systems and code review.
/// @param version of the tool
std::string FormatProblemsAsSarif(const std::vector<Problem>& problems, const std::string& version);

} // namespace Mox::Host
