#pragma once

#include "mox/cg/Intrinsics.h"
#include "mox/cg/Tree.h"

namespace Mox::Cg {

/// Makes nodes with known types.
class TreeBuilder
{
public:
    explicit TreeBuilder(Arena& nodes) : _nodes(nodes) {}

    Expression* Make(ExpressionKind kind, const Type& type,
                     const std::vector<Expression*>& operands);
    Expression* Binary(Operator op, const Type& type, Expression* left, Expression* right);
    Expression* Call(Builtin builtin, const Type& type, const std::vector<Expression*>& operands);
    Expression* Name(Variable& variable);

    /// Makes a number that fills every component of a type.
    Expression* Number(std::string_view text, const Type& type);

    /// Makes an int from 0 to 9.
    Expression* Digit(std::size_t value);

    /// Selects components of a vector, or of a scalar, which only has x.
    Expression* Swizzle(Expression* vector, std::string_view letters);

    /// Makes a vector with a scalar in every component.
    Expression* Splat(Expression* scalar, const Type& vector);

    Expression* Element(Expression* matrix, Expression* row, Expression* column);

    Statement* Make(StatementKind kind, Expression* value);
    Statement* Assign(Expression* target, Expression* value);

    Arena& Nodes() { return _nodes; }

private:
    Arena& _nodes;
};

} // namespace Mox::Cg
