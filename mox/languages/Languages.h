#pragma once

#include "mox/languages/Precision.h"
#include "mox/languages/StageProgram.h"

#include <string_view>
#include <variant>

namespace Mox::Languages {

/// Where a host finds a parameter: keys and values of the reflection.
struct PlaceField
{
    std::string_view Key;
    std::variant<std::uint32_t, std::string> Value;
};
using PlaceFields = std::vector<PlaceField>;

struct SamplerPlace
{
    std::string Name;           ///< in the source
    std::uint32_t Unit;         ///< number of the texture
    std::uint32_t Set;          ///< as StageProgram::SamplerSet
    std::uint32_t FirstBinding; ///< as StageProgram::FirstSamplerBinding
};

/// A language in which programs are written. The file of its writer defines it.
struct Language
{
    std::string_view Name;   ///< on command lines and in reflection files
    std::string_view Ending; ///< conventional file extension, without the dot

    /// Writes a stage. The same stage always yields the same source.
    WrittenStage (*Write)(const StageProgram& program, Precision precision);

    // Each returns the place of a parameter, given its name in the source.
    PlaceFields (*PlaceBlock)(const std::string& name, std::uint32_t number);
    PlaceFields (*PlaceSampler)(const SamplerPlace& sampler);
    PlaceFields (*PlaceInput)(const std::string& name, std::uint32_t location);

    static const Language Hlsl;       ///< shader model 5.0
    static const Language Glsl;       ///< 4.50 for OpenGL
    static const Language VulkanGlsl; ///< 4.50 for Vulkan
    static const Language Essl;       ///< 3.00
    static const Language Msl;        ///< 2.0
    static const Language Wgsl;
};

/// In the order of the targets.
inline constexpr const Language* allLanguages[] = {
    &Language::Hlsl, &Language::Glsl, &Language::VulkanGlsl,
    &Language::Essl, &Language::Msl,  &Language::Wgsl,
};

} // namespace Mox::Languages
