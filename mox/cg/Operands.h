#pragma once

#include "mox/cg/Tree.h"

namespace Mox::Cg {

/// The precision of an operation on two numbers, by Cg's arithmetic conversions.
struct Precision
{
    Element Of;
    bool IsWeak;

    Precision Meet(const Precision& other) const;
};

Precision PrecisionOf(const Expression* value);

/// The common shape of several values: scalars are repeated, longer vectors truncated.
class CommonShape
{
public:
    /// @throws Failure if the value is not numeric or its shape does not fit
    void Add(const Expression* value);

    Type Of(Element element) const { return _shape.With(element); }

private:
    Type _shape = VectorType(Element::Int, 1);
};

/// @throws Failure if a value is neither a number nor a vector nor a matrix
void RequireNumeric(const Expression* value);

[[noreturn]] void FailConversion(const Expression* value, const Type& type);

} // namespace Mox::Cg
