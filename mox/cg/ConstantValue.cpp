#include "mox/cg/ConstantValue.h"

#include "mox/cg/Intrinsics.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace Mox::Cg {

namespace {

std::optional<double> Finite(double value, const Type& type)
{
    const double largest = type.Of == Element::Int ? std::numeric_limits<std::int32_t>::max()
                                                   : double(std::numeric_limits<float>::max());
    return std::abs(value) <= largest ? std::optional(value) : std::nullopt;
}

std::optional<double> ParseNumber(std::string_view text)
{
    double value = 0.0;
    std::int32_t integer = 0;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        std::from_chars(text.data() + 2, text.data() + text.size(), integer, 16);
        return integer;
    }
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

std::optional<double> EvaluateBinary(Operator op, double left, double right, const Type& type)
{
    const bool isInt = type.Of == Element::Int;
    switch (op) {
    case Operator::Add:
        return Finite(left + right, type);
    case Operator::Subtract:
        return Finite(left - right, type);
    case Operator::Multiply:
        return Finite(left * right, type);
    case Operator::Divide:
        if (right == 0.0)
            return std::nullopt;
        return Finite(isInt ? std::trunc(left / right) : left / right, type);
    case Operator::Modulo:
        return right == 0.0 ? std::nullopt : std::optional(std::fmod(left, right));
    default:
        return std::nullopt;
    }
}

std::optional<double> EvaluateCall(Builtin id, double value, const Type& type)
{
    switch (id) {
    case Builtin::Abs:
        return std::abs(value);
    case Builtin::Cos:
        return std::cos(value);
    case Builtin::Exp:
        return Finite(std::exp(value), type);
    case Builtin::Exp2:
        return Finite(std::exp2(value), type);
    case Builtin::Log:
        return value > 0.0 ? std::optional(std::log(value)) : std::nullopt;
    case Builtin::Log2:
        return value > 0.0 ? std::optional(std::log2(value)) : std::nullopt;
    case Builtin::Sin:
        return std::sin(value);
    case Builtin::Sqrt:
        return value >= 0.0 ? std::optional(std::sqrt(value)) : std::nullopt;
    default:
        return std::nullopt;
    }
}

bool HasCall(const Expression& expression)
{
    return expression.Kind == ExpressionKind::Intrinsic ||
           std::any_of(expression.Operands.begin(), expression.Operands.end(),
                       [](const Expression* operand) { return HasCall(*operand); });
}

} // namespace

bool IsConstant(const Expression& expression)
{
    switch (expression.Kind) {
    case ExpressionKind::Name:
        return expression.Refers->Where == Storage::Constant;
    case ExpressionKind::Number:
    case ExpressionKind::Boolean:
        return true;
    case ExpressionKind::Unary:
    case ExpressionKind::Binary:
    case ExpressionKind::Construct:
    case ExpressionKind::Convert:
    case ExpressionKind::Swizzle:
    case ExpressionKind::Intrinsic:
        return std::all_of(expression.Operands.begin(), expression.Operands.end(),
                           [](const Expression* operand) { return IsConstant(*operand); });
    default:
        return false;
    }
}

std::optional<double> Evaluate(const Expression& expression)
{
    const auto& operands = expression.Operands;
    std::optional<double> first;
    std::optional<double> second;
    if (!operands.empty() && expression.Kind != ExpressionKind::Name)
        first = Evaluate(*operands[0]);
    if (operands.size() == 2)
        second = Evaluate(*operands[1]);
    switch (expression.Kind) {
    case ExpressionKind::Number:
        return ParseNumber(expression.Text);
    case ExpressionKind::Name: {
        const Variable& variable = *expression.Refers;
        return variable.Where == Storage::Constant ? Evaluate(*variable.Value) : std::nullopt;
    }
    case ExpressionKind::Unary:
        return first && expression.Op == Operator::Negate ? std::optional(-*first) : std::nullopt;
    case ExpressionKind::Binary:
        return first && second ? EvaluateBinary(expression.Op, *first, *second, expression.Of)
                               : std::nullopt;
    case ExpressionKind::Convert:
        if (!first || expression.Of.Of == Element::Bool || expression.Of.IsMatrix())
            return std::nullopt;
        return Finite(expression.Of.Of == Element::Int ? std::trunc(*first) : *first,
                      expression.Of);
    case ExpressionKind::Construct:
        return operands.size() == 1 ? first : std::nullopt;
    case ExpressionKind::Swizzle:
        return operands[0]->Kind == ExpressionKind::Swizzle || operands[0]->Of.IsScalar()
                   ? first
                   : std::nullopt;
    case ExpressionKind::Intrinsic:
        if (!first)
            return std::nullopt;
        if (expression.Builtin->Id == Builtin::Pow && second && *first > 0.0)
            return Finite(std::pow(*first, *second), expression.Of);
        return operands.size() == 1 ? EvaluateCall(expression.Builtin->Id, *first, expression.Of)
                                    : std::nullopt;
    default:
        return std::nullopt;
    }
}

bool IsConstantValue(const Expression& expression)
{
    if (expression.Kind == ExpressionKind::Boolean)
        return true;
    if (Evaluate(expression))
        return !HasCall(expression);
    if (expression.Kind != ExpressionKind::Construct && expression.Kind != ExpressionKind::Convert)
        return expression.Kind == ExpressionKind::Name &&
               expression.Refers->Where == Storage::Constant;
    return std::all_of(expression.Operands.begin(), expression.Operands.end(),
                       [](const Expression* operand) { return IsConstantValue(*operand); });
}

} // namespace Mox::Cg
