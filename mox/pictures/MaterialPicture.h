#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/nodefile/NodeFiles.h"
#include "mox/pictures/Graphviz.h"

#include <map>
#include <string>

namespace Mox::Host {

/// Returns the icon of each node's type, by node id. Types without an icon are left out.
std::map<std::string, Picture> IconsOfNodes(const MaterialGraph& graph, const PluginSet& plugins,
                                            const NodeFiles& files);

/// Draws an authoring graph, whether or not it is resolved: each node in its own colours with its
/// title, id and ports, and each port with its label and its type as far as that is known.
///
/// Placeholders have a dashed border. Ports that an edge names but the node lacks are also drawn.
/// References between nodes are dotted lines.
/// @param problems shown with their nodes: errors in red, warnings in amber
/// @param images by node id, such as the icon of the type or a thumbnail
Drawing DrawMaterial(const MaterialGraph& graph, const ProblemList& problems,
                     const std::map<std::string, Picture>& images);

} // namespace Mox::Host
