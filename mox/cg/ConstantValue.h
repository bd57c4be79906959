#pragma once

#include "mox/cg/Tree.h"

#include <optional>

namespace Mox::Cg {

/// Whether nothing but numbers and constants of the module is in an expression.
bool IsConstant(const Expression& expression);

/// The value of a constant scalar, or of a vector with one number in all components; nothing if it
/// has no finite value or is computed in a way that is not known here.
std::optional<double> Evaluate(const Expression& expression);

/// Whether every language can take an expression as the value of a constant: constructors of
/// numbers that can be evaluated.
bool IsConstantValue(const Expression& expression);

} // namespace Mox::Cg
