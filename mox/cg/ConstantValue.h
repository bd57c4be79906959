#pragma once

#include "mox/cg/Tree.h"

#include <optional>

namespace Mox::Cg {

/// Whether an expression consists only of numbers and constants of the module.
bool IsConstant(const Expression& expression);

/// Returns the value of a constant scalar, or of a vector whose components are all the same number;
/// nothing if the value is not finite or contains an operation that is not evaluated here.
std::optional<double> Evaluate(const Expression& expression);

/// Whether every language accepts an expression as the initial value of a constant, which is the
/// case for numbers that can be evaluated and constructors of them.
bool IsConstantValue(const Expression& expression);

} // namespace Mox::Cg
