#pragma once

#include "mox/cg/Hoister.h"
#include "mox/cg/LibraryLowering.h"
#include "mox/cg/ShapeLowering.h"

namespace Mox::Cg {

/// Lowers expressions, and appends to a list the statements that must run before them.
class ExpressionLowering
{
public:
    /// @param hoister provides the list of statements
    ExpressionLowering(Arena& nodes, Hoister& hoister)
        : _build(nodes), _hoister(hoister), _library(nodes, hoister), _shapes(nodes, hoister)
    {}

    /// Must be called first for each function: declares copies of the parameters that its body
    /// assigns.
    void CopyAssigned(const Function& function, std::vector<Statement*>& statements);

    /// Returns an expression without side effects.
    Expression* Lower(Expression* expression);

    /// Like Lower, but the returned expression may itself be a call with side effects.
    Expression* LowerWhole(Expression* expression);

    /// Emits the side effects of an expression and drops its value.
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
    const Expression* _compound = nullptr; ///< target of the compound assignment being lowered
    Expression* _compoundTarget = nullptr; ///< the same target, lowered
};

} // namespace Mox::Cg
