#pragma once

#include "mox/shader/ShaderType.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Removes spaces, tabs and line breaks from both ends of a string.
std::string_view TrimSpaces(std::string_view text);

/// Requires an item with this name and, if Values is not empty, one of these values for it.
struct Condition
{
    std::string Name;
    std::vector<std::string> Values;
};

/// A conjunction of conditions.
using Conditions = std::vector<Condition>;

/// Parses conditions such as "Function=Sine, Cosine; Alpha=true": semicolons separate conditions,
/// commas separate values. Spaces around names and values are ignored. Names and values may be
/// empty.
Conditions ParseConditions(std::string_view text);

/// Parses a Cg type such as "half3", "float4x4" or "sampler2D"; returns nothing for any other
/// string.
std::optional<ShaderType> ParseShaderType(std::string_view text);

} // namespace Mox::Host
