#pragma once

#include "mox/host/Problem.h"
#include "mox/preview/DrawCall.h"
#include "mox/preview/PreviewBindings.h"
#include "mox/preview/Scene.h"
#include "mox/preview/TextureLoader.h"
#include "mox/targets/ProgramCompiler.h"

namespace Mox::Host {

/// The sources of a program's inputs, which are matched by name.
struct DrawSources
{
    const Mesh& Geometry;
    const PreviewBindings* Bindings; ///< null for a program without a material
    TextureLoader* Textures;         ///< likewise
    const SceneTextures& Scene;      ///< textures that the environment reads
    const StreamConstants& Streams;  ///< take precedence over the streams of the mesh
};

/// Makes a draw call for a program, with values for its vertex inputs and textures. Uniforms are
/// set separately, see FillUniforms.
/// @param program compiled to the target Spirv
/// @param problems receives an error for each input of the program that no source provides
DrawCall BuildDraw(const CompiledProgram& program, const DrawSources& sources,
                   ProblemList& problems);

/// Returns the contents of a program's uniform blocks.
/// @param bindings null for a program without a material
/// @param scene values supplied by the environment
/// @param problems receives an error for each uniform of the program that no source provides
std::vector<DrawUniforms> FillUniforms(const CompiledProgram& program,
                                       const PreviewBindings* bindings, const UniformValues& scene,
                                       ProblemList& problems);

} // namespace Mox::Host
