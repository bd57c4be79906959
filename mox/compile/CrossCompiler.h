#pragma once

#include "mox/compile/SpirvModule.h"

#include <string>
#include <string_view>

namespace Mox::Host {

/// The texture unit of a sampler's binding: the register in HLSL, the unit in OpenGL, the index of
/// texture and sampler in MSL.
inline std::uint32_t GetTextureUnit(std::uint32_t samplerBinding)
{
    return samplerBinding - firstSamplerBinding;
}

/// The entry point of a stage in a target.
std::string_view GetEntryPoint(CompileTarget target, ProgramStage stage);

/// The text of a module in a target language.
/// @param module valid, laid out by LayOutModule
/// @param target any but Spirv
/// @throws std::exception if the module cannot be said in the language
std::string CrossCompile(const SpirvWords& module, CompileTarget target, ProgramStage stage);

} // namespace Mox::Host
