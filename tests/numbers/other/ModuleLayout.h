#pragma once

#include "mox/compile/SpirvCompiler.h"

namespace Mox::Host {

/// Gives a module of the front end its final places. Attribute ATTRn stands on location n; a value
/// in TEXCOORDn on location n, called "interpolant<n>" in both stages; the fragment's colour n on
/// location n, called "fragmentColour<n>". Names of other things and the marks of the semantics are
/// taken out, so that no name inside a program stands in the way of one outside.
/// @param words a well-formed module without uniforms
SpirvWords LayOutModule(const SpirvWords& words);

} // namespace Mox::Host
