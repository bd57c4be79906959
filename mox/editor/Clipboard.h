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

/// Nodes of a material with the edges and references among them and the document's values for
/// their bindings, as the text of a material document of their own.
/// @throws HostError if there is no such node, or if one of them has failed
std::string CopyAsText(const MaterialGraph& graph, const std::vector<std::string>& ids,
                       const PluginSet& plugins);

/// The change that adds what such a text holds to a material. Ids that are taken become others, and
/// values for bindings that the material has already stay as they are.
/// @param corner where the upper left corner of the nodes is to come, in pixels; without it each
///        comes a little below and to the right of where the text has it
/// @throws HostError if the text is not a material document
GraphChange PasteText(std::string_view text, const MaterialGraph& into, const PluginSet& plugins,
                      const std::optional<LayoutPoint>& corner);

} // namespace Mox::Host
