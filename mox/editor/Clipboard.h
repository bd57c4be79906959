#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/layout/LayeredLayout.h"

#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Copies nodes and annotations of a material, the edges and references between those nodes, and
/// the document's values for their bindings.
/// @returns a material document
/// @throws HostError if there is no such node or annotation, or if a node has failed
std::string CopyAsText(const MaterialGraph& graph, const GraphParts& parts,
                       const PluginSet& plugins);

/// Builds the change that adds a copied document to a material. Nodes and annotations whose ids are
/// already in use get new ones; binding values that the material already has are kept.
/// @param corner new upper-left corner of the content, in pixels; without it, everything is placed
///        slightly below and to the right of its position in the document
/// @throws HostError if the text is not a material document
GraphChange PasteText(std::string_view text, const MaterialGraph& into, const PluginSet& plugins,
                      const std::optional<LayoutPoint>& corner);

} // namespace Mox::Host
