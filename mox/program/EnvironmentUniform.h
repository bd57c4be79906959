#pragma once

#include "mox/shader/ShaderType.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Mox::Host {

/// How often a host changes a uniform. The order is that of the uniform blocks.
enum class UniformRate
{
    Frame,    ///< once per frame
    Material, ///< when the material or its values change
    Object,   ///< for each object drawn
};
constexpr UniformRate uniformRates[] = {UniformRate::Frame, UniformRate::Material,
                                        UniformRate::Object};

/// "frame", "material" or "object".
constexpr std::string_view GetRateName(UniformRate rate)
{
    constexpr std::string_view names[] = {"frame", "material", "object"}; // in the rates' order
    return names[static_cast<std::size_t>(rate)];
}

/// A run-time constant that an environment declares.
struct EnvironmentUniform
{
    std::string Name;
    ShaderType Type;  ///< never a texture
    UniformRate Rate; ///< Frame or Object, never Material
};

} // namespace Mox::Host
