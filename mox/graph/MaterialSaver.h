#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"

namespace Mox::Host {

/// Makes the document of a graph; loading it gives the graph again.
///
/// A node that was not changed since it was loaded is written as it was stored. Of any other node,
/// and of a new one, those properties are written that the document has or that differ from a new
/// node of the type, in the order of the bag, and behind them those that the type does not know, as
/// they were stored. A value that the user cannot change and that the node settles by itself is
/// written as the document has it, or not at all. What a placeholder does not show is kept.
/// @throws HostError if a node cannot be made for comparison
MaterialDocument SaveMaterial(const MaterialGraph& material);

} // namespace Mox::Host
