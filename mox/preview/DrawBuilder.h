#pragma once

#include "mox/compile/ProgramCompiler.h"
#include "mox/host/Problem.h"
#include "mox/preview/DrawCall.h"
#include "mox/preview/PreviewBindings.h"
#include "mox/preview/Scene.h"
#include "mox/preview/TextureLoader.h"

namespace Mox::Host {

/// What there is to feed a program with. Programs and this meet by names alone.
struct DrawSources
{
    const Mesh& Geometry;
    const PreviewBindings* Bindings; ///< null for a program without a material
    TextureLoader* Textures;         ///< the same
    const SceneTextures& Scene;      ///< textures that the environment reads
};

/// Makes a draw call of a program and the values for its vertex inputs and textures; uniforms come
/// from FillUniforms.
/// @param program compiled to the target Spirv
/// @param problems takes what the program asks for and nobody has
DrawCall BuildDraw(const CompiledProgram& program, const DrawSources& sources,
                   ProblemList& problems);

/// The contents of a program's uniform blocks.
/// @param bindings null for a program without a material
/// @param scene what the environment supplies
/// @param problems takes what the program asks for and nobody has
std::vector<DrawUniforms> FillUniforms(const CompiledProgram& program,
                                       const PreviewBindings* bindings, const UniformValues& scene,
                                       ProblemList& problems);

} // namespace Mox::Host
