#pragma once

#include "mox/program/ProgramStage.h"

#include <string_view>
#include <vector>

namespace Mox::Host {

/// A language that programs are exported in, besides Cg.
enum class CompileTarget
{
    Hlsl,       ///< shader model 5.0
    Glsl,       ///< 4.50 for OpenGL, with explicit bindings and locations
    GlslVulkan, ///< 4.50 for Vulkan, with descriptor sets
    Essl,       ///< 3.00, as OpenGL ES 3 and browsers read it
    Msl,        ///< 2.0
    Wgsl,
    Spirv, ///< 1.0 for Vulkan 1.0, binary
};

/// Every target, in the order of the enumeration.
const std::vector<CompileTarget>& AllCompileTargets();

/// The word on command lines and in reflection files: "hlsl", "glsl", "glsl-vulkan", "essl", "msl",
/// "wgsl", "spirv".
std::string_view GetTargetName(CompileTarget target);

/// What files in the language end in, as other tools know it, without the dot in front.
std::string_view GetTargetEnding(CompileTarget target);

} // namespace Mox::Host
