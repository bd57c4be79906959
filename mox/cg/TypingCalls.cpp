#include "mox/Text.h"
#include "mox/cg/Operands.h"
#include "mox/cg/Typing.h"

#include <algorithm>
#include <optional>

namespace Mox::Cg {

namespace {

using Materials::Compose;

std::string Describe(const std::vector<Expression*>& arguments)
{
    std::string text = "(";
    for (const Expression* argument : arguments)
        text += Compose(text.size() > 1 ? ", " : "", argument->Of.Format());
    return text + ")";
}

/// Returns how badly an argument matches a parameter; nothing if it cannot be passed.
std::optional<int> Distance(const Expression* argument, const Variable& parameter)
{
    constexpr int toStronger = 1;
    constexpr int toFloat = 2;
    constexpr int toWeaker = 4;
    constexpr int toOtherShape = 8;
    const bool isOut = parameter.Where == Storage::Out;
    const Type& from = isOut ? parameter.Of : argument->Of;
    const Type& to = isOut ? argument->Of : parameter.Of;
    if (!Converts(from, to) ||
        (parameter.Where == Storage::InOut && !Converts(parameter.Of, argument->Of)))
        return std::nullopt;
    if (from == to)
        return 0;
    const int shape = from.With(to.Of) == to ? 0 : toOtherShape;
    if (from.Of == to.Of)
        return shape;
    if (from.Of > to.Of)
        return shape + (argument->IsWeak && to.HasFloats() ? toStronger : toWeaker);
    return shape + (from.HasFloats() ? toStronger : toFloat);
}

} // namespace

Expression* Typing::Call(const std::vector<Function*>& overloads,
                         std::vector<Expression*> arguments, const Token& name)
{
    const Function* best = nullptr;
    int bestDistance = 0;
    bool isAmbiguous = false;
    for (const Function* candidate : overloads) {
        if (candidate->Parameters.size() != arguments.size())
            continue;
        std::optional<int> sum = 0;
        for (std::size_t i = 0; i < arguments.size() && sum; ++i) {
            const auto distance = Distance(arguments[i], *candidate->Parameters[i]);
            sum = distance ? std::optional(*sum + *distance) : std::nullopt;
        }
        if (!sum)
            continue;
        isAmbiguous = best && *sum == bestDistance;
        if (!best || *sum < bestDistance) {
            best = candidate;
            bestDistance = *sum;
        }
    }
    if (!best)
        throw Failure(name.Where,
                      Compose("no function ", Quote(name.Text), " accepts ", Describe(arguments)));
    if (isAmbiguous)
        throw Failure(name.Where, Compose("several functions ", Quote(name.Text), " accept ",
                                          Describe(arguments)));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Variable& parameter = *best->Parameters[i];
        if (parameter.Where == Storage::In)
            arguments[i] = Convert(arguments[i], parameter.Of);
        else
            Target(arguments[i]);
    }
    Does.Add(best->Does);
    Expression* call = Make(ExpressionKind::Call, best->Result, arguments, name.Where);
    call->Callee = best;
    return call;
}

Expression* Typing::CallLibrary(std::vector<Expression*> arguments, const Token& name)
{
    if (const Intrinsic* intrinsic = FindIntrinsic(name.Text)) {
        if (intrinsic->Id == Builtin::Mul)
            return Multiply(std::move(arguments), name.Where);
        if (arguments.size() != intrinsic->Parameters.size())
            throw Failure(name.Where,
                          Compose(Quote(name.Text), " expects ", intrinsic->Parameters.size(),
                                  " arguments, not ", arguments.size()));
        return CallIntrinsic(*intrinsic, std::move(arguments), name.Where);
    }
    if (const auto read = FindTextureRead(name.Text))
        return Read(*read, std::move(arguments), name);
    return nullptr;
}

Expression* Typing::CallIntrinsic(const Intrinsic& intrinsic, std::vector<Expression*> arguments,
                                  Position where)
{
    Does.Discards |= intrinsic.Id == Builtin::Clip;
    Does.TakesDerivatives |= intrinsic.Id == Builtin::Ddx || intrinsic.Id == Builtin::Ddy ||
                             intrinsic.Id == Builtin::Fwidth;
    CommonShape shape;
    std::optional<Precision> meeting;
    bool allowsInts = false;
    const auto& letters = intrinsic.Parameters;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Expression* argument = arguments[i];
        const bool isMatrix = letters[i] == 'm' || letters[i] == 'x';
        if (isMatrix ? !argument->Of.IsMatrix() || !argument->Of.HasFloats() ||
                           (letters[i] == 'm' && argument->Of.Rows != argument->Of.Columns)
                     : argument->Of.IsMatrix())
            throw Failure(argument->Where, Compose(Quote(intrinsic.Name), " does not accept ",
                                                   argument->Of.Format()));
        RequireNumeric(argument);
        const bool isPlain = letters[i] == 'g' || letters[i] == 'n' || letters[i] == 'b';
        if (isPlain)
            shape.Add(argument);
        if (letters[i] != 'o') {
            const Precision precision = PrecisionOf(argument);
            meeting = meeting ? meeting->Meet(precision) : precision;
        }
        allowsInts |= letters[i] == 'n';
    }
    Precision precision = *meeting;
    if (precision.Of < Element::Fixed && !(allowsInts && precision.Of == Element::Int))
        precision.Of = allowsInts ? Element::Int : Element::Float;
    const Type common = shape.Of(precision.Of);
    constexpr int three = 3;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        switch (letters[i]) {
        case 'o':
            Target(arguments[i]);
            if (!Converts(common, arguments[i]->Of))
                FailConversion(arguments[i], common);
            break;
        case 'b':
            arguments[i] = Convert(arguments[i], common.With(Element::Bool));
            break;
        case 's':
            arguments[i] = Convert(arguments[i], VectorType(precision.Of, 1));
            break;
        case 'v':
            if (arguments[i]->Of.IsScalar())
                FailConversion(arguments[i], VectorType(precision.Of, three));
            arguments[i] = Convert(arguments[i], VectorType(precision.Of, three));
            break;
        case 'm':
        case 'x':
            break;
        default:
            arguments[i] = Convert(arguments[i], common);
        }
    }
    Type result = common;
    switch (intrinsic.Result) {
    case 'B':
        result = VectorType(Element::Bool, 1);
        break;
    case 'c':
        result = common.With(Element::Bool);
        break;
    case 's':
        result = VectorType(precision.Of, 1);
        break;
    case '4':
        result = VectorType(precision.Of, 4);
        break;
    case 'v':
        result = VectorType(precision.Of, three);
        break;
    case 't':
        result = arguments[0]->Of;
        std::swap(result.Rows, result.Columns);
        break;
    case '0':
        result = Type();
        break;
    default:
        break;
    }
    Expression* call = Make(ExpressionKind::Intrinsic, result, arguments, where);
    call->Builtin = &intrinsic;
    return call;
}

/// Types a product: a vector on the left is a row, one on the right a column.
Expression* Typing::Multiply(std::vector<Expression*> arguments, Position where)
{
    if (arguments.size() != 2)
        throw Failure(where, Compose("\"mul\" expects 2 arguments, not ", arguments.size()));
    for (const Expression* argument : arguments)
        RequireNumeric(argument);
    const Type& left = arguments[0]->Of;
    const Type& right = arguments[1]->Of;
    const int inner = right.IsMatrix() ? right.Rows : right.Columns;
    if ((!left.IsMatrix() && !right.IsMatrix()) || left.Columns != inner)
        throw Failure(where, Compose("\"mul\" does not accept ", Describe(arguments)));
    const Element element =
        std::max(Element::Fixed, PrecisionOf(arguments[0]).Meet(PrecisionOf(arguments[1])).Of);
    Type result = left;
    result.Columns = right.IsMatrix() ? right.Columns : std::uint8_t(1);
    if (!right.IsMatrix())
        result = VectorType(element, left.Rows);
    for (Expression*& argument : arguments)
        argument = Convert(argument, argument->Of.With(element));
    Expression* call = Make(ExpressionKind::Intrinsic, result.With(element), arguments, where);
    call->Builtin = &GetIntrinsic(Builtin::Mul);
    return call;
}

Expression* Typing::Read(const TextureRead& read, std::vector<Expression*> arguments,
                         const Token& name)
{
    constexpr int four = 4;
    const bool isPlain = read.As->Id == Builtin::Read;
    const bool isGradient = isPlain && arguments.size() == 4;
    if (arguments.size() != 2 && !isGradient)
        throw Failure(name.Where, Compose(Quote(name.Text), isPlain ? " expects 2 or 4 arguments"
                                                                    : " expects 2 arguments"));
    if (arguments[0]->Of.Of != read.Sampler || arguments[0]->Of.IsArray())
        FailConversion(arguments[0], Type{read.Sampler});
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        int expected = read.Coordinates;
        if (read.As->Id == Builtin::ReadProjected)
            ++expected;
        else if (!isPlain)
            expected = four;
        const Type& given = arguments[i]->Of;
        if (given.IsVector() && given.Columns == expected + 1 && (isPlain || expected < four) &&
            i == 1)
            throw Failure(arguments[i]->Where, Compose(Quote(name.Text), " with ", given.Format(),
                                                       " compares depth, which is not supported"));
        arguments[i] = Convert(arguments[i], VectorType(Element::Float, expected));
    }
    Expression* call =
        Make(ExpressionKind::Intrinsic, VectorType(Element::Float, four), arguments, name.Where);
    call->Builtin = isGradient ? &GetIntrinsic(Builtin::ReadGradient) : read.As;
    Does.TakesDerivatives |= !isGradient && read.As->Id != Builtin::ReadAtLevel;
    if (read.Components < four) {
        Expression* value = Make(ExpressionKind::Swizzle,
                                 VectorType(Element::Float, read.Components), {call}, name.Where);
        value->Text = std::string_view("xyzw").substr(0, static_cast<std::size_t>(read.Components));
        call = value;
    }
    return Convert(call, call->Of.With(read.Result));
}

} // namespace Mox::Cg
