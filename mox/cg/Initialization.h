#pragma once

#include "mox/cg/TreeBuilder.h"

namespace Mox::Cg {

/// Gives zero to the variables and outputs of a lowered function that are not assigned as a whole
/// before anything else happens to them.
void Initialize(Function& function, TreeBuilder& build);

} // namespace Mox::Cg
