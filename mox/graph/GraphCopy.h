#pragma once

#include "mox/graph/MaterialGraph.h"

namespace Mox::Host {

/// Creates the change that appends copies of some nodes and annotations of a graph to the same or a
/// different graph, in document order. Links between the copied nodes are included: edges with
/// their points, and references in properties. Links to other nodes are omitted. A copy keeps its
/// id if it is free; otherwise "rim" becomes "rim2", and "rim2" becomes "rim3".
/// @param parts need not contain duplicates
/// @throws HostError if a node or annotation does not exist
GraphChange CopyParts(const MaterialGraph& from, const GraphParts& parts,
                      const MaterialGraph& into);

} // namespace Mox::Host
