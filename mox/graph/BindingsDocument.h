#pragma once

#include "mox/graph/MaterialGraph.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Creates the run-time parameters of one node. A node that failed to build its ports has none,
/// because the value that caused the failure, such as a count, may also determine the size of its
/// bindings.
/// @throws HostError if the node fails
std::vector<PluginBinding> CreateNodeBindings(const GraphNode& node);

/// Creates the run-time parameters of a material, in the order of its nodes, and applies the values
/// that the document stores for them.
/// @throws HostError naming the node that fails
std::vector<PluginBinding> CreateBindings(const MaterialGraph& graph);

/// Converts a binding to a record with all values that a document can store.
DocumentBinding DescribeBinding(const PluginBinding& binding);

/// Formats bindings as an XML document with one element per binding. Each element includes the
/// stream type, the component count and the group, which cannot be derived from its other
/// attributes.
std::string FormatBindings(const std::vector<PluginBinding>& bindings);

/// Reads a document written by FormatBindings.
/// @throws HostError with file and line if the file is not such a document
std::vector<PluginBinding> ReadBindings(const std::filesystem::path& file);

/// Parses such a document from a string.
/// @param file the name of the document in messages
std::vector<PluginBinding> ParseBindings(const std::string& file, std::string_view text);

} // namespace Mox::Host
