#pragma once

#include "mox/cg/Hoister.h"

namespace Mox::Cg {

/// Moves constants without a finite value to variables, since some languages evaluate constant
/// expressions at compile time and reject such values.
void HoistRisky(Expression* expression, Hoister& hoister);

} // namespace Mox::Cg
