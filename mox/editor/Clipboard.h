#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/layout/LayeredLayout.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Copies nodes of a material, the edges and references among them, and the document's values for
/// their bindings.
/// @returns the text of a material document
/// @throws HostError if there is no such node, or if one of them has failed
std::string CopyAsText(const MaterialGraph& graph, const std::vector<std::string>& ids,
                       const PluginSet& plugins);

/// The change that adds the content of such a text to a material. Nodes whose ids are taken get new
/// ones, and binding values that the material already has are kept.
/// @param corner new upper left corner of the nodes, in pixels; without it each node is placed a
///        little below and to the right of its position in the text
/// @throws HostError if the text is not a material document
GraphChange PasteText(std::string_view text, const MaterialGraph& into, const PluginSet& plugins,
                      const std::optional<LayoutPoint>& corner);

} // namespace Mox::Host
