#pragma once

#include "mox/shader/ShaderType.h"

#include <optional>
#include <string_view>

namespace Mox::Host {

/// Parses a Cg type such as "half3", "float4x4" or "sampler2D"; returns nothing for any other
/// string.
std::optional<ShaderType> ParseShaderType(std::string_view text);

} // namespace Mox::Host
