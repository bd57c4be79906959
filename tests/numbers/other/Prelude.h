#pragma once

#include <string_view>

namespace Mox::Host {

/// The text of prelude.hlsl, which stands before each program.
extern const std::string_view prelude;

} // namespace Mox::Host
