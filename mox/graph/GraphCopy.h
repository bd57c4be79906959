#pragma once

#include "mox/graph/MaterialGraph.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// The change that adds copies of some nodes of a graph to the same or another graph, at the end
/// and in document order, with the links among them: edges, and references through properties.
/// Links to other nodes are left out. A copy keeps its id where that is free; else "rim" becomes
/// "rim2", and "rim2" becomes "rim3".
/// @param ids each once is enough
/// @throws HostError if there is no such node
GraphChange CopyNodes(const MaterialGraph& from, const std::vector<std::string>& ids,
                      const MaterialGraph& into);

} // namespace Mox::Host
