#pragma once

#include "mox/cg/Hoister.h"

namespace Mox::Cg {

/// Lowers expressions that change the shape of a value or select between two values.
class ShapeLowering
{
public:
    ShapeLowering(Arena& nodes, Hoister& hoister) : _build(nodes), _hoister(hoister) {}

    /// Converts a lowered value to another type.
    Expression* Convert(Expression* value, const Type& type);

    // The operands of both must be lowered.
    Expression* LowerConstruct(Expression* expression);
    Expression* LowerSelect(Expression* expression);

private:
    TreeBuilder _build;
    Hoister& _hoister;
};

} // namespace Mox::Cg
