#pragma once

#include "mox/program/Environment.h"

#include <cstddef>
#include <set>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Returns the indices of the pieces of environment code that the bodies call, directly or through
/// other pieces. Any occurrence of a function's name as a word counts as a call.
std::set<std::size_t> FindCalledCode(const std::vector<EnvironmentCode>& code,
                                     const std::vector<std::string_view>& bodies);

} // namespace Mox::Host
