#pragma once

#include "mox/host/MaterialGraph.h"

namespace Mox::Host {

/// Settles the component counts of all nodes, from sources to sinks, and then the precisions, from
/// sinks to sources. What an earlier run settled is forgotten first.
/// @throws HostError if edges run in a circle, naming the whole way round, or if the counts at a
///         node's inputs do not agree
void ResolveGraph(const MaterialGraph& graph);

} // namespace Mox::Host
