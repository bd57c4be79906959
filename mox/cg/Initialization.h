#pragma once

#include "mox/cg/TreeBuilder.h"

namespace Mox::Cg {

/// Initializes to zero all variables and outputs of a lowered function, except those that are
/// assigned as a whole before any other use.
void Initialize(Function& function, TreeBuilder& build);

} // namespace Mox::Cg
