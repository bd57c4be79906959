#pragma once

#include "mox/program/Environment.h"

#include <cstddef>
#include <set>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Which code of an environment bodies call, and what that calls in turn, as indices into the code.
/// A word of a text counts as a call.
std::set<std::size_t> FindCalledCode(const std::vector<EnvironmentCode>& code,
                                     const std::vector<std::string_view>& bodies);

} // namespace Mox::Host
