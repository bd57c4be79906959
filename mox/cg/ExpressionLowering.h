#pragma once

#include "mox/cg/Hoister.h"
#include "mox/cg/LibraryLowering.h"
#include "mox/cg/ShapeLowering.h"

namespace Mox::Cg {

/// Lowers expressions, and puts what has to happen before them into a list of statements.
class ExpressionLowering
{
public:
    /// @param hoister that has the list
    ExpressionLowering(Arena& nodes, Hoister& hoister)
        : _build(nodes), _hoister(hoister), _library(nodes, hoister), _shapes(nodes, hoister)
    {}

    /// Starts with a function: declares copies of the parameters that its body assigns.
    void CopyAssigned(const Function& function, std::vector<Statement*>& statements);

    /// An expression without effects.
    Expression* Lower(Expression* expression);

    /// The same, but the whole may be a call with effects.
    Expression* LowerWhole(Expression* expression);

    /// What an expression does, without its value.
    void LowerEffect(Expression* expression);

private:
    void LowerOperands(std::span<Expression*> operands);
    Expression* LowerTarget(Expression* target);
    Expression* LowerAssign(Expression* assignment);
    void Store(Expression* target, Expression* value);
    Expression* LowerBinary(Expression* expression);
    Expression* LowerCall(Expression* call, bool isResultUsed);
    Expression* LowerConvert(Expression* expression);
    Expression* LowerIndex(Expression* expression);
    Expression* LowerIntrinsic(Expression* call);
    Expression* LowerSincos(Expression* call);
    Expression* LowerModf(Expression* call);

    TreeBuilder _build;
    Hoister& _hoister;
    LibraryLowering _library;
    ShapeLowering _shapes;
    std::vector<std::pair<const Variable*, Variable*>> _copies;
    const Expression* _compound = nullptr; ///< target of the assignment whose value is lowered
    Expression* _compoundTarget = nullptr; ///< the same, lowered
};

} // namespace Mox::Cg
