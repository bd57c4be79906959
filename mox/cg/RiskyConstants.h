#pragma once

#include "mox/cg/Hoister.h"

namespace Mox::Cg {

/// Some languages evaluate constants as they compile, and refuse what has no finite value. So that
/// becomes a variable.
void HoistRisky(Expression* expression, Hoister& hoister);

} // namespace Mox::Cg
