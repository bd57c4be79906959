#pragma once

#include "mox/cg/Hoister.h"

namespace Mox::Cg {

/// Lowers calls of Cg's built-in functions, and expands those that not every language has.
class LibraryLowering
{
public:
    LibraryLowering(Arena& nodes, Hoister& hoister) : _build(nodes), _hoister(hoister) {}

    /// Lowers a call of a function without output parameters. Its operands must be lowered.
    /// @returns the value; null if there is none
    Expression* Lower(Expression* call);

private:
    Expression* LowerClip(Expression* value);
    Expression* LowerFmod(Expression* call);
    Expression* LowerLit(Expression* call);
    Expression* LowerRead(Expression* call);
    Expression* LowerScalarGeometry(Expression* call);

    TreeBuilder _build;
    Hoister& _hoister;
};

} // namespace Mox::Cg
