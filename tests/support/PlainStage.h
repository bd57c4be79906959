#pragma once

#include "mox/languages/StageProgram.h"

namespace Mox::Languages {

/// Makes the stage of a module whose "main" specifies the locations of its parameters by semantics:
/// "ATTR", "TEXCOORD" and "COLOR" with a number, and "POSITION". Samplers are numbered by their
/// "TEXUNIT" or otherwise in order; all other uniforms are in one block. Everything keeps its name.
/// @param code lowered, with a "main"; must outlive the result
/// @throws HostError for a semantic without a counterpart in other languages
StageProgram MakeStage(const Cg::Module& code, bool isVertex);

} // namespace Mox::Languages
