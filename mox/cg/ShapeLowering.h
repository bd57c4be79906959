#pragma once

#include "mox/cg/Hoister.h"

namespace Mox::Cg {

/// Lowers what makes a value of another shape, or chooses between two.
class ShapeLowering
{
public:
    ShapeLowering(Arena& nodes, Hoister& hoister) : _build(nodes), _hoister(hoister) {}

    /// A lowered value of another type.
    Expression* Convert(Expression* value, const Type& type);

    // Both of lowered operands.
    Expression* LowerConstruct(Expression* expression);
    Expression* LowerSelect(Expression* expression);

private:
    TreeBuilder _build;
    Hoister& _hoister;
};

} // namespace Mox::Cg
