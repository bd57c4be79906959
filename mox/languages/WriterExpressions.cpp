#include "mox/languages/Writer.h"

#include <algorithm>
#include <charconv>

namespace Mox::Languages {

using Cg::Builtin;
using Cg::Expression;
using Cg::ExpressionKind;
using Cg::Operator;

namespace {

struct OperatorSymbol
{
    std::string_view Symbol;
    Binding Own;
};

/// In the order of Operator.
constexpr OperatorSymbol symbols[] = {
    {"*", Binding::Product},   {"/", Binding::Product},   {"%", Binding::Product},
    {"+", Binding::Sum},       {"-", Binding::Sum},       {"<", Binding::Relation},
    {"<=", Binding::Relation}, {">", Binding::Relation},  {">=", Binding::Relation},
    {"==", Binding::Equality}, {"!=", Binding::Equality}, {"&&", Binding::And},
    {"||", Binding::Or},       {"-", Binding::Unary},     {"!", Binding::Unary},
};

Binding Tighter(Binding binding)
{
    return static_cast<Binding>(static_cast<int>(binding) + 1);
}

} // namespace

bool IsLiteral(const Expression& expression)
{
    switch (expression.Kind) {
    case ExpressionKind::Number:
    case ExpressionKind::Boolean:
        return true;
    case ExpressionKind::Construct:
    case ExpressionKind::Unary:
        return std::all_of(expression.Operands.begin(), expression.Operands.end(),
                           [](const Expression* operand) { return IsLiteral(*operand); });
    default:
        return false;
    }
}

std::string_view Writer::Symbol(Operator op)
{
    return symbols[static_cast<std::size_t>(op)].Symbol;
}

const Expression& Writer::Unrepeated(const Expression& expression)
{
    const bool isRepeated = expression.Kind == ExpressionKind::Construct &&
                            expression.Of.IsVector() && expression.Operands.size() == 1;
    return isRepeated ? *expression.Operands[0] : expression;
}

void Writer::Put(const Expression& expression, Binding around)
{
    switch (expression.Kind) {
    case ExpressionKind::Number:
        PutNumber(expression);
        return;
    case ExpressionKind::Boolean:
        Text += expression.Text;
        return;
    case ExpressionKind::Name:
        PutName(*expression.Refers);
        return;
    case ExpressionKind::Unary:
        PutUnary(expression, around);
        return;
    case ExpressionKind::Binary:
        PutBinary(expression, around);
        return;
    case ExpressionKind::Select:
        PutSelect(expression, around);
        return;
    case ExpressionKind::Call:
        PutUserCall(expression);
        return;
    case ExpressionKind::Intrinsic:
        if (expression.Builtin->Id >= Builtin::Read)
            PutRead(expression);
        else if (expression.Builtin->Id == Builtin::Mul)
            PutProduct(expression, around);
        else
            PutIntrinsic(expression, around);
        return;
    case ExpressionKind::Construct:
        if (expression.Operands.empty())
            PutZero(expression.Of);
        else
            PutConstruct(expression);
        return;
    case ExpressionKind::Convert:
        PutConvert(expression, around);
        return;
    case ExpressionKind::Swizzle:
        PutSelected(*expression.Operands[0]);
        Text += '.';
        Text += expression.Text;
        return;
    case ExpressionKind::Member:
        PutSelected(*expression.Operands[0]);
        Text += '.';
        Text += MemberName(expression.Text);
        return;
    case ExpressionKind::Element:
        PutElement(expression);
        return;
    case ExpressionKind::Index:
        PutIndex(expression);
        return;
    case ExpressionKind::Assign:
    case ExpressionKind::PostStep:
    case ExpressionKind::Sequence:
        return; // these are statements in a lowered tree
    }
}

void Writer::PutNumber(const Expression& number)
{
    // Not every language accepts hexadecimal float literals.
    const bool isHex = number.Text.starts_with("0x") || number.Text.starts_with("0X");
    if (isHex && number.Of.HasFloats()) {
        constexpr int base = 16;
        std::uint32_t value = 0;
        std::from_chars(number.Text.data() + 2, number.Text.data() + number.Text.size(), value,
                        base);
        Text += std::to_string(value) + ".0";
        return;
    }
    Text += number.Text;
    if (number.Of.HasFloats() && number.Text.find_first_of(".eE") == std::string_view::npos)
        Text += ".0";
}

void Writer::PutName(const Cg::Variable& variable)
{
    const auto text = _texts.find(&variable);
    Text += text == _texts.end() ? NameOf(variable) : text->second;
}

void Writer::PutSelected(const Expression& expression)
{
    Put(expression, Binding::Postfix);
}

void Writer::PutArgument(const Cg::Variable& parameter, const Expression& argument)
{
    static_cast<void>(parameter);
    Put(argument, Binding::Assign);
}

void Writer::PutUserCall(const Expression& call)
{
    Text += _functions.at(call.Callee);
    Text += '(';
    for (std::size_t i = 0; i < call.Operands.size(); ++i) {
        Text += i > 0 ? ", " : "";
        PutArgument(*call.Callee->Parameters[i], *call.Operands[i]);
    }
    Text += ')';
}

void Writer::PutList(std::span<Expression* const> values)
{
    Text += '(';
    for (std::size_t i = 0; i < values.size(); ++i) {
        Text += i > 0 ? ", " : "";
        Put(*values[i], Binding::Assign);
    }
    Text += ')';
}

void Writer::PutCall(std::string_view name, std::span<Expression* const> arguments)
{
    Text += name;
    PutList(arguments);
}

void Writer::PutInfix(const Expression& left, std::string_view symbol, const Expression& right,
                      Binding own, Binding around)
{
    const bool isNested = own < around;
    const bool isComparison = own == Binding::Equality || own == Binding::Relation;
    Text += isNested ? "(" : "";
    // Comparisons of comparisons get parentheses, because some languages require them.
    Put(left, isComparison ? Binding::Sum : own);
    Text += ' ';
    Text += symbol;
    Text += ' ';
    Put(right, isComparison ? Binding::Sum : Tighter(own));
    Text += isNested ? ")" : "";
}

void Writer::PutBinary(const Expression& expression, Binding around)
{
    if (expression.Op == Operator::Modulo && !HasRemainder()) {
        PutRemainder(expression, around);
        return;
    }
    const auto& [symbol, own] = symbols[static_cast<std::size_t>(expression.Op)];
    const Expression* left = expression.Operands[0];
    const Expression* right = expression.Operands[1];
    // Arithmetic operators accept a scalar with a vector, so one operand need not be repeated.
    if (expression.Op <= Operator::Subtract && expression.Of.IsVector()) {
        if (&Unrepeated(*right) != right)
            right = &Unrepeated(*right);
        else
            left = &Unrepeated(*left);
    }
    // Parenthesize "&&" within "||", since few people remember the precedence.
    const bool isAndInOr = own == Binding::And && around >= Binding::Or && around <= Binding::And;
    PutInfix(*left, symbol, *right, own, isAndInOr ? Binding::Primary : around);
}

void Writer::PutUnary(const Expression& expression, Binding around)
{
    const bool isNested = Binding::Unary < around;
    Text += isNested ? "(" : "";
    Text += Symbol(expression.Op);
    const Expression& operand = *expression.Operands[0];
    const bool isUnary = operand.Kind == ExpressionKind::Unary;
    Put(operand, isUnary ? Binding::Postfix : Binding::Unary);
    Text += isNested ? ")" : "";
}

void Writer::PutSelect(const Expression& expression, Binding around)
{
    const bool isNested = Binding::Select < around;
    Text += isNested ? "(" : "";
    Put(*expression.Operands[0], Binding::Or);
    Text += " ? ";
    Put(*expression.Operands[1], Binding::Or);
    Text += " : ";
    Put(*expression.Operands[2], Binding::Select);
    Text += isNested ? ")" : "";
}

void Writer::PutConstruct(const Expression& expression)
{
    PutCall(TypeName(expression.Of), expression.Operands);
}

void Writer::PutConvert(const Expression& expression, Binding around)
{
    const Expression& operand = *expression.Operands[0];
    Cg::Type from = operand.Of;
    Cg::Type to = expression.Of;
    from.Of = Computed(from.Of);
    to.Of = Computed(to.Of);
    if (from == to)
        Put(operand, around);
    else
        PutCall(TypeName(expression.Of), expression.Operands);
}

/// The column comes first.
void Writer::PutElement(const Expression& expression)
{
    PutSelected(*expression.Operands[0]);
    for (const std::size_t i : {std::size_t(2), std::size_t(1)}) {
        Text += '[';
        Put(*expression.Operands[i]);
        Text += ']';
    }
}

void Writer::PutIndex(const Expression& expression)
{
    if (expression.Operands[0]->Of.IsMatrix()) {
        Text += "transpose(";
        Put(*expression.Operands[0]);
        Text += ')';
    } else {
        PutSelected(*expression.Operands[0]);
    }
    Text += '[';
    Put(*expression.Operands[1]);
    Text += ']';
}

void Writer::PutIntrinsic(const Expression& call, Binding around)
{
    static_cast<void>(around);
    PutCall(FunctionName(*call.Builtin), call.Operands);
}

void Writer::PutProduct(const Expression& call, Binding around)
{
    PutInfix(*call.Operands[0], "*", *call.Operands[1], Binding::Product, around);
}

/// Writes "a - b * (a / b)".
void Writer::PutRemainder(const Expression& expression, Binding around)
{
    const bool isNested = Binding::Sum < around;
    Text += isNested ? "(" : "";
    PutSelected(*expression.Operands[0]);
    Text += " - ";
    PutSelected(*expression.Operands[1]);
    Text += " * (";
    PutInfix(*expression.Operands[0], "/", *expression.Operands[1], Binding::Product,
             Binding::Comma);
    Text += isNested ? "))" : ")";
}

void Writer::PutByVectors(const Expression& expression, std::string_view symbol, int count)
{
    Text += TypeName(expression.Of);
    Text += '(';
    for (int i = 0; i < count; ++i) {
        Text += i > 0 ? ", " : "";
        for (const Expression* operand : expression.Operands) {
            if (operand != expression.Operands[0]) {
                Text += ' ';
                Text += symbol;
                Text += ' ';
            }
            PutSelected(*operand);
            if (operand->Of.IsMatrix()) {
                Text += '[';
                Text += std::to_string(i);
                Text += ']';
            }
        }
    }
    Text += ')';
}

} // namespace Mox::Languages
