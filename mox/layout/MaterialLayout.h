#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/MaterialGraph.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// The change that lays out nodes of a material: it sets their "PositionX" and "PositionY", the
/// upper left corner of each in pixels, and nothing else. What stands where it should already is
/// not set, so laying out twice changes nothing the second time.
/// @param ids of the nodes; none for all. The others stay where they are, and the area of those
///        that are laid out keeps its upper left corner, which is at 0, 0 for all.
/// @throws HostError if there is no such node
GraphChange LayOutMaterial(const MaterialGraph& graph, const std::vector<std::string>& ids = {});

} // namespace Mox::Host
