#pragma once

#include "mox/shader/ShaderType.h"

#include <optional>
#include <string_view>

namespace Mox::Host {

/// The type that a Cg text such as "half3", "float4x4" or "sampler2D" names; nothing for any other
/// text.
std::optional<ShaderType> ParseShaderType(std::string_view text);

} // namespace Mox::Host
