#pragma once

#include "mox/cg/Intrinsics.h"
#include "mox/cg/Tree.h"

namespace Mox::Cg {

/// Makes the nodes of expressions and gives them their types. All conversions are nodes of their
/// own. Every operation throws a Failure if Cg has no such expression.
class Typing
{
public:
    explicit Typing(Arena& arena) : _arena(arena) {}

    Expression* Number(const Token& token);
    Expression* Boolean(const Token& token);
    Expression* Name(Variable& variable, Position where);
    Expression* Unary(Operator op, Expression* operand, Position where);
    Expression* Binary(Operator op, Expression* left, Expression* right, Position where);
    Expression* Select(Expression* condition, Expression* yes, Expression* no, Position where);

    /// @param op that combines the old value with the new one; null for a plain assignment
    Expression* Assign(const Operator* op, Expression* target, Expression* value, Position where);

    /// "++" and "--".
    Expression* Step(Operator op, Expression* target, bool isPostfix, Position where);

    Expression* Index(Expression* what, Expression* at, Position where);

    /// What is after a dot: components, elements of a matrix, a member.
    Expression* Dot(Expression* what, const Token& name);

    /// A constructor or, with one part, a cast.
    Expression* Construct(const Type& type, std::vector<Expression*> parts, Position where);

    /// The initial value of an array or struct, in braces.
    Expression* Aggregate(const Type& type, std::vector<Expression*> parts, Position where);

    Expression* Sequence(Expression* first, Expression* second, Position where);

    /// A call of one of the module's functions of a name.
    Expression* Call(const std::vector<Function*>& overloads, std::vector<Expression*> arguments,
                     const Token& name);

    /// A call of a function of Cg's library; null if there is none of the name.
    Expression* CallLibrary(std::vector<Expression*> arguments, const Token& name);

    /// An implicit conversion, as an assignment makes it.
    Expression* Convert(Expression* value, const Type& type);

    /// A value that decides: one bool.
    Expression* Condition(Expression* value);

    /// Checks that a value can be assigned to, and marks the variable as assigned.
    void Target(const Expression* target);

    /// What the calls made so far do; for the caller to read and to clear.
    Effects Does;

private:
    Expression* Make(ExpressionKind kind, const Type& type,
                     const std::vector<Expression*>& operands, Position where);
    Expression* MakeBinary(Operator op, const Type& type, Expression* left, Expression* right,
                           Position where);
    Expression* Cast(Expression* value, const Type& type);
    Expression* SelectElements(Expression* matrix, const Token& name);
    Expression* CallIntrinsic(const Intrinsic& intrinsic, std::vector<Expression*> arguments,
                              Position where);
    Expression* Multiply(std::vector<Expression*> arguments, Position where);
    Expression* Read(const TextureRead& read, std::vector<Expression*> arguments,
                     const Token& name);

    Arena& _arena;
};

} // namespace Mox::Cg
