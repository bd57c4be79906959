#include "mox/cg/RiskyConstants.h"

#include "mox/cg/ConstantValue.h"

namespace Mox::Cg {

void HoistRisky(Expression* expression, Hoister& hoister)
{
    std::span<Expression*> operands = expression->Operands;
    const auto hoist = [&](std::size_t i) { operands[i] = hoister.Hoist(operands[i], "operand"); };
    const auto isBelow = [&](std::size_t low, std::size_t high, bool isStrict) {
        const auto from = Evaluate(*operands[low]);
        const auto to = Evaluate(*operands[high]);
        return from && to && (isStrict ? *from < *to : *from <= *to);
    };
    if (expression->Kind == ExpressionKind::Binary) {
        const bool isIntegral =
            expression->Of.Of == Element::Int &&
            (expression->Op == Operator::Divide || expression->Op == Operator::Modulo);
        if (IsConstant(*expression) && !Evaluate(*expression))
            hoist(0);
        if (isIntegral && IsConstant(*operands[1]) && Evaluate(*operands[1]).value_or(0.0) == 0.0)
            hoist(1);
        return;
    }
    switch (expression->Builtin->Id) {
    case Builtin::Clamp:
        if (IsConstant(*operands[1]) && IsConstant(*operands[2]) && !isBelow(1, 2, false))
            hoist(1);
        break;
    case Builtin::Smoothstep:
        if (IsConstant(*operands[0]) && IsConstant(*operands[1]) && !isBelow(0, 1, true))
            hoist(0);
        break;
    default:
        break;
    }
    if (IsConstant(*expression) && !Evaluate(*expression))
        hoist(0);
}

} // namespace Mox::Cg
