#include "mox/cg/Typing.h"

#include "mox/Text.h"
#include "mox/cg/Operands.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace Mox::Cg {

namespace {

using Materials::Compose;

constexpr int deepest = 200;

bool IsComparison(Operator op)
{
    return op >= Operator::Less && op <= Operator::NotEqual;
}

/// Returns the index of a component's letter; nothing for any other letter.
std::optional<int> ComponentOf(char letter, std::string_view letters)
{
    const std::size_t at = letters.find(letter);
    return at == std::string_view::npos ? std::nullopt : std::optional(static_cast<int>(at));
}

} // namespace

Expression* Typing::Make(ExpressionKind kind, const Type& type,
                         const std::vector<Expression*>& operands, Position where)
{
    int depth = 0;
    for (const Expression* operand : operands)
        depth = std::max<int>(depth, operand->Depth);
    if (depth >= deepest)
        throw Failure(where, "this expression is nested too deeply");
    Expression node;
    node.Kind = kind;
    node.Depth = static_cast<std::uint8_t>(depth + 1);
    node.Of = type;
    node.Where = where;
    node.Operands = _arena.Copy(operands);
    return _arena.Make(node);
}

Expression* Typing::Number(const Token& token)
{
    std::string_view text = token.Text;
    Expression* number = Make(ExpressionKind::Number, VectorType(Element::Int, 1), {}, token.Where);
    number->Text = text;
    number->IsWeak = true;
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    if (isHex || text.find_first_of(".eEfFhHxX") == std::string_view::npos) {
        std::int32_t value = 0;
        text.remove_prefix(isHex ? 2 : 0);
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), value, isHex ? 16 : 10);
        if (error != std::errc() || end != text.data() + text.size())
            throw Failure(token.Where, Compose("not a 32-bit integer: ", Quote(token.Text)));
        if (text.size() > 1 && text[0] == '0' && !isHex)
            throw Failure(token.Where, "an integer cannot begin with 0");
        return number;
    }
    number->Of.Of = Element::Float;
    const std::size_t suffix = text.find_last_of("fFhHxX");
    if (suffix != std::string_view::npos) {
        number->IsWeak = false;
        const char letter = text[suffix];
        if (letter == 'h' || letter == 'H')
            number->Of.Of = Element::Half;
        else if (letter == 'x' || letter == 'X')
            number->Of.Of = Element::Fixed;
        text = number->Text = text.substr(0, suffix);
    }
    float value = 0.0f;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isTiny = error == std::errc::result_out_of_range && text.find("e-") != text.npos;
    if ((error != std::errc() && !isTiny) || end != text.data() + text.size())
        throw Failure(token.Where, Compose("not a 32-bit float: ", Quote(token.Text)));
    return number;
}

Expression* Typing::Boolean(const Token& token)
{
    Expression* value =
        Make(ExpressionKind::Boolean, VectorType(Element::Bool, 1), {}, token.Where);
    value->Text = token.Text;
    return value;
}

Expression* Typing::Name(Variable& variable, Position where)
{
    Expression* name = Make(ExpressionKind::Name, variable.Of, {}, where);
    name->Refers = &variable;
    return name;
}

Expression* Typing::Unary(Operator op, Expression* operand, Position where)
{
    RequireNumeric(operand);
    if (op == Operator::Not) {
        operand = Convert(operand, operand->Of.With(Element::Bool));
    } else if (operand->Of.Of == Element::Bool) {
        operand = Convert(operand, operand->Of.With(Element::Int));
    }
    Expression* result = Make(ExpressionKind::Unary, operand->Of, {operand}, where);
    result->Op = op;
    result->IsWeak = operand->IsWeak;
    return result;
}

Expression* Typing::MakeBinary(Operator op, const Type& type, Expression* left, Expression* right,
                               Position where)
{
    Expression* result = Make(ExpressionKind::Binary, type, {left, right}, where);
    result->Op = op;
    return result;
}

Expression* Typing::Binary(Operator op, Expression* left, Expression* right, Position where)
{
    CommonShape shape;
    shape.Add(left);
    shape.Add(right);
    Precision precision = PrecisionOf(left).Meet(PrecisionOf(right));
    if (op == Operator::And || op == Operator::Or)
        precision.Of = Element::Bool;
    else if (precision.Of == Element::Bool && op != Operator::Equal && op != Operator::NotEqual)
        precision.Of = Element::Int;
    const Type type = shape.Of(precision.Of);
    if (op == Operator::Modulo && precision.Of != Element::Int)
        throw Failure(where, "\"%\" expects ints; \"fmod\" is for floats");
    if (type.IsMatrix() && (!type.HasFloats() || op == Operator::Modulo || IsComparison(op)))
        throw Failure(where, "this operator is not supported for matrices");
    const bool isBool = IsComparison(op) || precision.Of == Element::Bool;
    Expression* result = MakeBinary(op, type.With(isBool ? Element::Bool : precision.Of),
                                    Convert(left, type), Convert(right, type), where);
    result->IsWeak = precision.IsWeak && !isBool;
    return result;
}

Expression* Typing::Select(Expression* condition, Expression* yes, Expression* no, Position where)
{
    if (!yes->Of.IsNumeric() || yes->Of.IsMatrix() || !no->Of.IsNumeric() || no->Of.IsMatrix()) {
        if (!(yes->Of == no->Of) || yes->Of.IsSampler() || yes->Of.Of == Element::Void)
            throw Failure(where, Compose("cannot choose between ", yes->Of.Format(), " and ",
                                         no->Of.Format()));
        return Make(ExpressionKind::Select, yes->Of, {Condition(condition), yes, no}, where);
    }
    CommonShape shape;
    for (const Expression* operand : {condition, yes, no})
        shape.Add(operand);
    const Precision precision = PrecisionOf(yes).Meet(PrecisionOf(no));
    const Type type = shape.Of(precision.Of);
    // A single bool selects all components together.
    condition = condition->Of.IsScalar() ? Condition(condition)
                                         : Convert(condition, type.With(Element::Bool));
    Expression* result = Make(ExpressionKind::Select, type,
                              {condition, Convert(yes, type), Convert(no, type)}, where);
    result->IsWeak = precision.IsWeak;
    return result;
}

Expression* Typing::Assign(const Operator* op, Expression* target, Expression* value,
                           Position where)
{
    Target(target);
    if (op)
        value = Binary(*op, target, value, where);
    return Make(ExpressionKind::Assign, target->Of, {target, Convert(value, target->Of)}, where);
}

Expression* Typing::Step(Operator op, Expression* target, bool isPostfix, Position where)
{
    Token one;
    one.Text = "1";
    one.Where = where;
    Expression* assignment = Assign(&op, target, Number(one), where);
    return isPostfix ? Make(ExpressionKind::PostStep, target->Of, {assignment}, where) : assignment;
}

Expression* Typing::Index(Expression* what, Expression* at, Position where)
{
    const Type& type = what->Of;
    if (!type.IsArray() && !type.IsVector() && !type.IsMatrix())
        throw Failure(where, Compose("cannot index ", type.Format()));
    if (at->Of.HasFloats() && at->IsWeak)
        throw Failure(at->Where, "expected an int");
    at = Convert(at, VectorType(Element::Int, 1));
    const int size = type.IsArray() ? type.Length : type.IsMatrix() ? type.Rows : type.Columns;
    int value = 0;
    if (at->Kind == ExpressionKind::Number)
        std::from_chars(at->Text.data(), at->Text.data() + at->Text.size(), value);
    if (value >= size ||
        (at->Kind == ExpressionKind::Unary && at->Operands[0]->Kind == ExpressionKind::Number))
        throw Failure(at->Where, Compose("the index is outside ", type.Format()));
    return Make(ExpressionKind::Index, type.Selected(), {what, at}, where);
}

Expression* Typing::Dot(Expression* what, const Token& name)
{
    const Type& type = what->Of;
    if (type.Structure && !type.IsArray()) {
        for (const StructMember& member : type.Structure->Members) {
            if (member.Name != name.Text)
                continue;
            Expression* result = Make(ExpressionKind::Member, member.Of, {what}, name.Where);
            result->Text = member.Name;
            return result;
        }
        throw Failure(name.Where, Compose(type.Format(), " has no member ", Quote(name.Text)));
    }
    if (type.IsMatrix())
        return SelectElements(what, name);
    const std::string_view letters =
        name.Text.find_first_of("rgba") == std::string_view::npos ? "xyzw" : "rgba";
    std::string components;
    for (const char letter : name.Text) {
        const auto component = ComponentOf(letter, letters);
        if (!type.IsNumeric() || !component || *component >= type.Columns || components.size() == 4)
            throw Failure(name.Where,
                          Compose(type.Format(), " has no components ", Quote(name.Text)));
        components += "xyzw"[*component];
    }
    Expression* result =
        Make(ExpressionKind::Swizzle, VectorType(type.Of, static_cast<int>(components.size())),
             {what}, name.Where);
    result->Text = letters == "xyzw" ? name.Text : _arena.Copy(components);
    result->IsWeak = what->IsWeak;
    return result;
}

/// Selects elements of a matrix: "_m01" counts rows and columns from 0, "_12" from 1. Several can
/// be combined.
Expression* Typing::SelectElements(Expression* matrix, const Token& name)
{
    std::vector<Expression*> elements;
    std::string_view rest = name.Text;
    const Type& type = matrix->Of;
    while (!rest.empty()) {
        const bool isFromZero = rest.starts_with("_m");
        const std::size_t prefix = isFromZero ? 2 : 1;
        const char first = isFromZero ? '0' : '1';
        const int row = rest.size() < prefix + 2 ? -1 : rest[prefix] - first;
        const int column = rest.size() < prefix + 2 ? -1 : rest[prefix + 1] - first;
        if (rest[0] != '_' || row < 0 || row >= type.Rows || column < 0 || column >= type.Columns ||
            elements.size() == 4)
            throw Failure(name.Where,
                          Compose(type.Format(), " has no elements ", Quote(name.Text)));
        rest.remove_prefix(prefix + 2);
        Expression* element =
            Make(ExpressionKind::Element, VectorType(type.Of, 1), {matrix}, name.Where);
        element->Row = static_cast<std::uint8_t>(row);
        element->Column = static_cast<std::uint8_t>(column);
        elements.push_back(element);
    }
    if (elements.size() == 1)
        return elements[0];
    if (matrix->Kind != ExpressionKind::Name)
        throw Failure(name.Where, "several elements can be selected only from a variable");
    const Type vector = VectorType(type.Of, static_cast<int>(elements.size()));
    return Make(ExpressionKind::Construct, vector, elements, name.Where);
}

Expression* Typing::Construct(const Type& type, std::vector<Expression*> parts, Position where)
{
    if (!type.IsNumeric())
        throw Failure(where, Compose(type.Format(), " has no constructor"));
    if (parts.size() == 1)
        return Cast(parts[0], type);
    int components = 0;
    for (Expression*& part : parts) {
        RequireNumeric(part);
        if (part->Of.IsMatrix())
            throw Failure(part->Where, "a constructor argument cannot be a matrix");
        components += part->Of.Columns;
        part = Convert(part, part->Of.With(type.Of));
    }
    if (components != type.Rows * type.Columns)
        throw Failure(where, Compose(type.Format(), " expects ", type.Rows * type.Columns,
                                     " components, not ", components));
    return Make(ExpressionKind::Construct, type, parts, where);
}

Expression* Typing::Aggregate(const Type& type, std::vector<Expression*> parts, Position where)
{
    const std::size_t expected = type.IsArray()   ? type.Length
                                 : type.Structure ? type.Structure->Members.size()
                                                  : 0;
    if (expected == 0)
        return Construct(type, std::move(parts), where);
    if (parts.size() != expected)
        throw Failure(where,
                      Compose(type.Format(), " expects ", expected, " values, not ", parts.size()));
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts[i] =
            Convert(parts[i], type.IsArray() ? type.Selected() : type.Structure->Members[i].Of);
    return Make(ExpressionKind::Construct, type, parts, where);
}

Expression* Typing::Sequence(Expression* first, Expression* second, Position where)
{
    return Make(ExpressionKind::Sequence, second->Of, {first, second}, where);
}

Expression* Typing::Cast(Expression* value, const Type& type)
{
    Expression* result = Convert(value, type);
    if (!result->IsWeak)
        return result;
    // A cast value has exactly the precision of its type.
    Expression copy = *result;
    copy.IsWeak = false;
    return _arena.Make(copy);
}

Expression* Typing::Convert(Expression* value, const Type& type)
{
    if (value->Of == type)
        return value;
    if (!Converts(value->Of, type))
        FailConversion(value, type);
    // A literal gets the type directly, as long as its text is valid for that type.
    const bool staysNumber = type.HasFloats() && value->Of.Of != Element::Bool && value->IsWeak;
    const bool isNegative = value->Kind == ExpressionKind::Unary && value->Op == Operator::Negate &&
                            value->Operands[0]->Kind == ExpressionKind::Number;
    if (staysNumber && (value->Kind == ExpressionKind::Number || isNegative)) {
        const Type scalar = VectorType(type.Of, 1);
        Expression copy = *value;
        copy.Of = scalar;
        copy.IsWeak = false;
        if (isNegative)
            copy.Operands =
                _arena.Copy(std::vector<Expression*>{Convert(value->Operands[0], scalar)});
        value = _arena.Make(copy);
        if (type.IsScalar())
            return value;
    }
    return Make(ExpressionKind::Convert, type, {value}, value->Where);
}

Expression* Typing::Condition(Expression* value)
{
    if (!value->Of.IsScalar())
        throw Failure(value->Where,
                      Compose("expected a scalar condition, not ", value->Of.Format()));
    return Convert(value, VectorType(Element::Bool, 1));
}

void Typing::Target(const Expression* target)
{
    switch (target->Kind) {
    case ExpressionKind::Name:
        if (target->Refers->Where == Storage::Constant || target->Refers->Where == Storage::Uniform)
            throw Failure(target->Where, Compose(Quote(target->Refers->Name), " is constant"));
        target->Refers->IsAssigned = true;
        return;
    case ExpressionKind::Swizzle:
        for (std::size_t i = 0; i < target->Text.size(); ++i) {
            if (target->Text.find(target->Text[i]) != i)
                throw Failure(target->Where, "a component is assigned twice");
        }
        Target(target->Operands[0]);
        return;
    case ExpressionKind::Index:
    case ExpressionKind::Element:
    case ExpressionKind::Member:
        Target(target->Operands[0]);
        return;
    default:
        throw Failure(target->Where, "this expression cannot be assigned to");
    }
}

} // namespace Mox::Cg
