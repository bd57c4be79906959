#pragma once

#include <string_view>

namespace Mox::Host {

/// The content of prelude.hlsl, which is prepended to each program.
extern const std::string_view prelude;

} // namespace Mox::Host
