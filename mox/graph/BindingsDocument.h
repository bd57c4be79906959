#pragma once

#include "mox/bindings/Material.h"
#include "mox/graph/MaterialGraph.h"

#include <boost/shared_ptr.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// Lays values of a document over those of a binding; what the document leaves out stays.
/// @throws ShaderError if a value is none that the binding's reader takes
void ApplyValues(const DocumentBinding& values, Materials::Binding& binding);

/// The run-time parameters that one node makes. A node that has refused to build its ports makes
/// none: what made it refuse, such as a count, may size its bindings too.
/// @throws HostError if the node fails
std::vector<boost::shared_ptr<Materials::Binding>> CreateNodeBindings(const GraphNode& node);

/// The run-time parameters of a material, in the order of its nodes, with the document's own values
/// on them.
/// @throws HostError naming the node that fails
boost::shared_ptr<Materials::Material> CreateBindings(const MaterialGraph& graph);

/// Bindings as an XML document: one element each, with the stream type, the component count and the
/// group that the element's other attributes do not say.
std::string FormatBindings(const Materials::Material& material);

/// Reads such a document back.
/// @throws HostError with file and line if it is no such document
boost::shared_ptr<Materials::Material> ReadBindings(const std::filesystem::path& file);

} // namespace Mox::Host
