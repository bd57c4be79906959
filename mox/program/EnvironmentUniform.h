#pragma once

#include "mox/shader/ShaderType.h"

#include <string>
#include <string_view>

namespace Mox::Host {

/// How often a host changes a uniform, in the order in which blocks are numbered.
enum class UniformRate
{
    Frame,    ///< once for each picture
    Material, ///< when another material or other values of it are drawn
    Object,   ///< for each thing that is drawn
};
constexpr UniformRate uniformRates[] = {UniformRate::Frame, UniformRate::Material,
                                        UniformRate::Object};

/// "frame", "material" or "object".
std::string_view GetRateName(UniformRate rate);

/// A run-time constant that the environment of a material declares.
struct EnvironmentUniform
{
    std::string Name;
    ShaderType Type;  ///< no texture
    UniformRate Rate; ///< Frame or Object
};

} // namespace Mox::Host
