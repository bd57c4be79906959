#pragma once

#include "mox/cg/TreeBuilder.h"

namespace Mox::Cg {

/// Whether it matters where an expression is evaluated, though it changes no variable.
bool IsBound(const Expression& expression);

/// Whether no assignment can change the value.
bool IsFixed(const Expression& expression);

/// Builds a list of statements, and moves values out of expressions into variables of that list.
class Hoister
{
public:
    /// Sets the list for as long as it lives.
    class Target
    {
    public:
        /// @param declarations where variables are declared, if not in the list
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

    /// Where the list is: how many statements it has, and how many of all that were added may
    /// change a variable.
    struct Mark
    {
        std::size_t Place;
        std::size_t Effects;
    };
    Mark Now() const { return {_statements->size(), _effects}; }

    void Emit(Statement* statement);

    /// Notes a call whose statement the caller adds.
    void CountEffect() { ++_effects; }

    Variable* Declare(const Type& type, std::string_view name);

    /// Puts a value into a variable of its own.
    Expression* Hoist(Expression* value, std::string_view name);
    Expression* HoistAt(std::size_t place, Expression* value, std::string_view name);

    /// A value that was complete at a mark, and that statements added since may have changed.
    Expression* Keep(Expression* value, const Mark& mark);

    /// A value for an operand that may not be evaluated, or be evaluated later.
    Expression* Detach(Expression* value);

    /// A value that can be written several times.
    Expression* Reusable(Expression* value);
    void MakeReusable(std::span<Expression*> values);

    /// A value that no statement to come changes.
    Expression* Stable(Expression* value);

private:
    TreeBuilder _build;
    std::vector<Statement*>* _statements = nullptr;
    std::vector<Statement*>* _declarations = nullptr; ///< null: where they are
    std::size_t _effects = 0;
};

} // namespace Mox::Cg
