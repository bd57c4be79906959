#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/pictures/Graphviz.h"

#include <map>
#include <string>

namespace Mox::Host {

/// The icon of each node's type, by node id. Nodes of types without an icon have none.
std::map<std::string, Picture> IconsOfNodes(const MaterialGraph& graph, const PluginSet& plugins);

/// Draws an authoring graph as far as it goes, be it resolved or not: each node in its own colours
/// with its title, id and ports, and each port by its label with the type that is known by then.
///
/// Placeholders have a dashed border, and ports that an edge names but the node lacks are drawn
/// nevertheless. References between nodes are dotted lines.
/// @param problems what is red in the picture, or amber if it is a warning, and said at its node
/// @param images a picture for nodes by id, such as the icon of the type or a thumbnail
Drawing DrawMaterial(const MaterialGraph& graph, const ProblemList& problems,
                     const std::map<std::string, Picture>& images);

} // namespace Mox::Host
