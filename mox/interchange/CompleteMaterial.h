#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/interchange/MaterialXWriter.h"

namespace Mox::Host {

/// Collects the data that writers of other formats need from a material: its nodes with the values
/// of all properties, in topological order.
/// @param graph resolved; must outlive the result
/// @param plugins supply the default values
CompleteMaterial DescribeMaterial(const MaterialGraph& graph, const PluginSet& plugins);

} // namespace Mox::Host
