#pragma once

#include "mox/compile/FrontEnd.h"

#include <optional>
#include <string_view>

namespace Mox::Host {

/// Looks for what would overflow the stack of the front end, which recurses by the structure of a
/// program: brackets that are nested more than 256 deep, and statements of more than 4096
/// operators. Both are far more than code needs that was written to be read.
/// @returns the first such place, or nothing
std::optional<FrontEndMessage> FindDeepNesting(std::string_view program);

} // namespace Mox::Host
