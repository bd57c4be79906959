#pragma once

#include "mox/shader/ShaderType.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The text without spaces, tabs and line ends at its ends.
std::string_view TrimSpaces(std::string_view text);

/// Something that is named and, if there are values, must have one of them.
struct Condition
{
    std::string Name;
    std::vector<std::string> Values;
};

/// All of them must hold.
using Conditions = std::vector<Condition>;

/// Reads conditions such as "Function=Sine, Cosine; Alpha=true": semicolons separate them, commas
/// their values. Spaces around names and values are ignored. Names and values may come out empty.
Conditions ParseConditions(std::string_view text);

/// Parses a Cg type such as "half3", "float4x4" or "sampler2D"; returns nothing for any other
/// string.
std::optional<ShaderType> ParseShaderType(std::string_view text);

} // namespace Mox::Host
