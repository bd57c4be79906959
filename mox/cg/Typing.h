#pragma once

#include "mox/cg/Intrinsics.h"
#include "mox/cg/Tree.h"

namespace Mox::Cg {

/// Makes expression nodes and determines their types. All conversions are explicit nodes. Every
/// operation throws a Failure if the expression is not valid in Cg.
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

    /// @param op combines the old value with the new one; null for a plain assignment
    Expression* Assign(const Operator* op, Expression* target, Expression* value, Position where);

    /// Makes a "++" or "--".
    Expression* Step(Operator op, Expression* target, bool isPostfix, Position where);

    Expression* Index(Expression* what, Expression* at, Position where);

    /// Makes what a dot selects: components, elements of a matrix, or a member.
    Expression* Dot(Expression* what, const Token& name);

    /// Makes a constructor call or, with one part, a cast.
    Expression* Construct(const Type& type, std::vector<Expression*> parts, Position where);

    /// Makes the initial value of an array or struct, written in braces.
    Expression* Aggregate(const Type& type, std::vector<Expression*> parts, Position where);

    Expression* Sequence(Expression* first, Expression* second, Position where);

    /// Makes a call to the overload that matches best.
    Expression* Call(const std::vector<Function*>& overloads, std::vector<Expression*> arguments,
                     const Token& name);

    /// Makes a call to a built-in function of Cg; returns null if there is none with this name.
    Expression* CallLibrary(std::vector<Expression*> arguments, const Token& name);

    /// Makes an implicit conversion, as for an assignment.
    Expression* Convert(Expression* value, const Type& type);

    /// Converts a value to a condition, which is one bool.
    Expression* Condition(Expression* value);

    /// Checks that an expression can be assigned to, and marks its variable as assigned.
    void Target(const Expression* target);

    /// The effects of all calls made so far. The caller reads and resets it.
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
