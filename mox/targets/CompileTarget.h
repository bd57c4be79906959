#pragma once

#include <string_view>
#include <vector>

namespace Mox::Languages {
struct Language;
}

namespace Mox::Host {

/// The languages other than Cg in which programs are exported: Languages::allLanguages in their
/// order, then SPIR-V.
enum class CompileTarget
{
    Hlsl,       ///< shader model 5.0
    Glsl,       ///< 4.50 for OpenGL, with explicit bindings and locations
    GlslVulkan, ///< 4.50 for Vulkan, with descriptor sets
    Essl,       ///< 3.00, for OpenGL ES 3 and WebGL 2
    Msl,        ///< 2.0
    Wgsl,
    Spirv, ///< 1.0 for Vulkan 1.0, binary
};

/// Returns all targets, in the order of the enumerators.
const std::vector<CompileTarget>& AllCompileTargets();

/// Returns the name of a target on command lines and in reflection files, such as "glsl-vulkan".
std::string_view GetTargetName(CompileTarget target);

/// Returns the conventional file extension of the language, without the dot.
std::string_view GetTargetEnding(CompileTarget target);

/// Returns the language of the source; for SPIR-V, the language that it is compiled from.
const Languages::Language& GetTargetLanguage(CompileTarget target);

} // namespace Mox::Host
