#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/interchange/MaterialXWriter.h"

namespace Mox::Host {

/// What a writer of other formats needs of a material: its nodes with the values of all properties,
/// in an order in which each comes after those that feed it.
/// @param graph resolved; must outlive the result
/// @param plugins tell the defaults
CompleteMaterial DescribeMaterial(const MaterialGraph& graph, const PluginSet& plugins);

} // namespace Mox::Host
