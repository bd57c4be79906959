#pragma once

#include "mox/graph/MaterialGraph.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The run-time parameters that one node makes. A node that has refused to build its ports makes
/// none: what made it refuse, such as a count, may size its bindings too.
/// @throws HostError if the node fails
std::vector<PluginBinding> CreateNodeBindings(const GraphNode& node);

/// The run-time parameters of a material, in the order of its nodes, with the document's own values
/// on them.
/// @throws HostError naming the node that fails
std::vector<PluginBinding> CreateBindings(const MaterialGraph& graph);

/// A binding with all its values as a document could have them.
DocumentBinding DescribeBinding(const PluginBinding& binding);

/// Bindings as an XML document: one element each, with the stream type, the component count and the
/// group that the element's other attributes do not say.
std::string FormatBindings(const std::vector<PluginBinding>& bindings);

/// Reads such a document back.
/// @throws HostError with file and line if it is no such document
std::vector<PluginBinding> ReadBindings(const std::filesystem::path& file);

/// The same for a document in memory.
/// @param file the name of the document in messages
std::vector<PluginBinding> ParseBindings(const std::string& file, std::string_view text);

} // namespace Mox::Host
