#pragma once

#include "mox/cg/Intrinsics.h"
#include "mox/cg/Tree.h"

namespace Mox::Cg {

/// Makes nodes whose types are known.
class TreeBuilder
{
public:
    explicit TreeBuilder(Arena& nodes) : _nodes(nodes) {}

    Expression* Make(ExpressionKind kind, const Type& type,
                     const std::vector<Expression*>& operands);
    Expression* Binary(Operator op, const Type& type, Expression* left, Expression* right);
    Expression* Call(Builtin builtin, const Type& type, const std::vector<Expression*>& operands);
    Expression* Name(Variable& variable);

    /// A number in every component of a type.
    Expression* Number(std::string_view text, const Type& type);

    /// An int from 0 to 9.
    Expression* Digit(std::size_t value);

    /// Components of a vector or of a scalar, which has x alone.
    Expression* Swizzle(Expression* vector, std::string_view letters);

    /// A scalar in every component of a vector.
    Expression* Splat(Expression* scalar, const Type& vector);

    Expression* Element(Expression* matrix, Expression* row, Expression* column);

    Statement* Make(StatementKind kind, Expression* value);
    Statement* Assign(Expression* target, Expression* value);

    Arena& Nodes() { return _nodes; }

private:
    Arena& _nodes;
};

} // namespace Mox::Cg
