#pragma once

#include "mox/targets/ProgramCompiler.h"

namespace Mox::Host {

/// Assigns the final locations to a module of the front end. Attribute ATTRn gets location n; a
/// value in TEXCOORDn gets location n and the name "interpolant<n>" in both stages; the fragment's
/// colour n gets location n and the name "fragmentColour<n>". All other names and the semantics are
/// removed, so that no internal name conflicts with an external one.
/// @param words a well-formed module without uniforms
SpirvWords LayOutModule(const SpirvWords& words);

} // namespace Mox::Host
