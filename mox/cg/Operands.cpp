#include "mox/cg/Operands.h"

#include "mox/Text.h"

#include <algorithm>

namespace Mox::Cg {

namespace {

using Materials::Compose;

}

Precision Precision::Meet(const Precision& other) const
{
    if (IsWeak == other.IsWeak)
        return {std::max(Of, other.Of), IsWeak};
    const Precision& weak = IsWeak ? *this : other;
    const Precision& strong = IsWeak ? other : *this;
    const bool givesWay = strong.Of >= Element::Fixed || weak.Of <= strong.Of;
    return {givesWay ? strong.Of : weak.Of, false};
}

Precision PrecisionOf(const Expression* value)
{
    return {value->Of.Of, value->IsWeak};
}

void CommonShape::Add(const Expression* value)
{
    RequireNumeric(value);
    const Type& type = value->Of;
    if (type.IsScalar())
        return;
    if (_shape.IsScalar()) {
        _shape = type.With(Element::Int);
    } else if (type.IsMatrix() || _shape.IsMatrix()) {
        if (type.Rows != _shape.Rows || type.Columns != _shape.Columns)
            throw Failure(value->Where,
                          Compose("cannot combine ", _shape.With(Element::Float).Format(), " with ",
                                  type.Format()));
    } else {
        _shape.Columns = std::min(_shape.Columns, type.Columns);
    }
}

void RequireNumeric(const Expression* value)
{
    if (!value->Of.IsNumeric())
        throw Failure(value->Where,
                      Compose("expected a number or vector, not ", value->Of.Format()));
}

void FailConversion(const Expression* value, const Type& type)
{
    throw Failure(value->Where,
                  Compose("cannot convert ", value->Of.Format(), " to ", type.Format()));
}

} // namespace Mox::Cg
