#pragma once

#include "mox/cg/TreeBuilder.h"

namespace Mox::Cg {

/// Whether an expression has no side effects but must not be moved, since it takes derivatives or
/// may discard.
bool IsBound(const Expression& expression);

/// Whether no assignment can change the value of an expression.
bool IsFixed(const Expression& expression);

/// Builds a list of statements, and moves values from expressions to variables declared in that
/// list.
class Hoister
{
public:
    /// Sets the list during its lifetime.
    class Target
    {
    public:
        /// @param declarations list that declarations are added to; null to add them to statements
        Target(Hoister& hoister, std::vector<Statement*>& statements,
               std::vector<Statement*>* declarations);
        ~Target();
        Target(const Target&) = delete;
        Target& operator=(const Target&) = delete;

    private:
        Hoister& _hoister;
        std::vector<Statement*>* _statements;
        std::vector<Statement*>* _declarations;
    };

    explicit Hoister(Arena& nodes) : _build(nodes) {}

    /// A position in the list: the number of statements, and how many of all statements added so
    /// far may change a variable.
    struct Mark
    {
        std::size_t Place;
        std::size_t Effects;
    };
    Mark Now() const { return {_statements->size(), _effects}; }

    void Emit(Statement* statement);

    /// Counts a call with side effects whose statement the caller adds.
    void CountEffect() { ++_effects; }

    Variable* Declare(const Type& type, std::string_view name);

    /// Moves a value to a new variable, and returns an expression that reads it.
    Expression* Hoist(Expression* value, std::string_view name);
    Expression* HoistAt(std::size_t place, Expression* value, std::string_view name);

    /// Returns a value as it was at a mark: if statements added since may have changed it, the
    /// value is moved to a variable at the mark.
    Expression* Keep(Expression* value, const Mark& mark);

    /// Returns a value for an operand that may be evaluated later or not at all.
    Expression* Detach(Expression* value);

    /// Returns a value that can be written several times at no cost.
    Expression* Reusable(Expression* value);
    void MakeReusable(std::span<Expression*> values);

    /// Returns a value that later statements cannot change.
    Expression* Stable(Expression* value);

private:
    TreeBuilder _build;
    std::vector<Statement*>* _statements = nullptr;
    std::vector<Statement*>* _declarations = nullptr; ///< null if they go to _statements
    std::size_t _effects = 0;
};

} // namespace Mox::Cg
