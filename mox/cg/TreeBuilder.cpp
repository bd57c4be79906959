#include "mox/cg/TreeBuilder.h"

namespace Mox::Cg {

Expression* TreeBuilder::Make(ExpressionKind kind, const Type& type,
                              const std::vector<Expression*>& operands)
{
    Expression node;
    node.Kind = kind;
    node.Of = type;
    node.Operands = _nodes.Copy(operands);
    return _nodes.Make(node);
}

Expression* TreeBuilder::Binary(Operator op, const Type& type, Expression* left, Expression* right)
{
    Expression* result = Make(ExpressionKind::Binary, type, {left, right});
    result->Op = op;
    return result;
}

Expression* TreeBuilder::Call(Builtin builtin, const Type& type,
                              const std::vector<Expression*>& operands)
{
    Expression* result = Make(ExpressionKind::Intrinsic, type, operands);
    result->Builtin = &GetIntrinsic(builtin);
    return result;
}

Expression* TreeBuilder::Name(Variable& variable)
{
    Expression* name = Make(ExpressionKind::Name, variable.Of, {});
    name->Refers = &variable;
    return name;
}

Expression* TreeBuilder::Number(std::string_view text, const Type& type)
{
    Expression* number = Make(ExpressionKind::Number, VectorType(type.Of, 1), {});
    number->Text = text;
    return Splat(number, type);
}

Expression* TreeBuilder::Digit(std::size_t value)
{
    return Number(std::string_view("0123456789").substr(value, 1), VectorType(Cg::Element::Int, 1));
}

Expression* TreeBuilder::Swizzle(Expression* vector, std::string_view letters)
{
    const Type type = VectorType(vector->Of.Of, static_cast<int>(letters.size()));
    if (vector->Of.IsScalar())
        return Splat(vector, type);
    if (vector->Of == type && std::string_view("xyzw").starts_with(letters))
        return vector;
    if (vector->Kind == ExpressionKind::Swizzle) {
        std::string composed;
        for (const char letter : letters)
            composed += vector->Text[std::string_view("xyzw").find(letter)];
        return Swizzle(vector->Operands[0], composed);
    }
    Expression* result = Make(ExpressionKind::Swizzle, type, {vector});
    result->Text = _nodes.Copy(letters);
    return result;
}

Expression* TreeBuilder::Splat(Expression* scalar, const Type& vector)
{
    return vector.IsScalar() ? scalar : Make(ExpressionKind::Construct, vector, {scalar});
}

Expression* TreeBuilder::Element(Expression* matrix, Expression* row, Expression* column)
{
    return Make(ExpressionKind::Element, VectorType(matrix->Of.Of, 1), {matrix, row, column});
}

Statement* TreeBuilder::Make(StatementKind kind, Expression* value)
{
    Statement statement;
    statement.Kind = kind;
    statement.Value = value;
    return _nodes.Make(statement);
}

Statement* TreeBuilder::Assign(Expression* target, Expression* value)
{
    return Make(StatementKind::Evaluate, Make(ExpressionKind::Assign, target->Of, {target, value}));
}

} // namespace Mox::Cg
