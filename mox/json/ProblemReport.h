#pragma once

#include "mox/host/Problem.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Problems in the form that compilers use, "file:line:column: error: message [rule]", a line each.
std::string FormatProblemsAsText(const std::vector<Problem>& problems);

/// Problems as a JSON array of objects with severity, rule, file, line, column, node, port and
/// message; what is not known of a place is left out.
std::string FormatProblemsAsJson(const std::vector<Problem>& problems);

/// Problems as a SARIF 2.1.0 log with one run, for build systems and code review.
/// @param version of the tool
std::string FormatProblemsAsSarif(const std::vector<Problem>& problems, const std::string& version);

} // namespace Mox::Host
