#pragma once

#include "mox/graph/MaterialGraph.h"

namespace Mox::Host {

/// The change that adds copies of some nodes and annotations of a graph to the same or another
/// graph, at the end and in document order, with the links among the nodes: edges with their
/// points, and references through properties. Links to other nodes are left out. A copy keeps its
/// id where that is free; else "rim" becomes "rim2", and "rim2" becomes "rim3".
/// @param parts each once is enough
/// @throws HostError if there is no such node or annotation
GraphChange CopyParts(const MaterialGraph& from, const GraphParts& parts,
                      const MaterialGraph& into);

} // namespace Mox::Host
