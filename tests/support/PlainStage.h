#pragma once

#include "mox/languages/StageProgram.h"

namespace Mox::Languages {

/// The stage of a module whose "main" names the places of its parameters by semantics: "ATTR",
/// "TEXCOORD" and "COLOR" with a number, and "POSITION". Samplers are numbered by their "TEXUNIT"
/// or else in their order; all other uniforms are one block. Everything keeps its own name.
/// @param code lowered, with a "main"; must outlive the result
/// @throws HostError for a semantic that has no counterpart in other languages
StageProgram MakeStage(const Cg::Module& code, bool isVertex);

} // namespace Mox::Languages
