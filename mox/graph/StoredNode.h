#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/GraphStore.h"
#include "mox/host/Problem.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Gives a property a value as documents have it; ids mean nodes of the graph. What is wrong is
/// reported.
/// @returns whether the value was taken; if not, the property is as before
bool SetFromDocument(const GraphStore& graph, Materials::GuiProperty& property,
                     const DocumentProperty& value, const Place& where, ProblemList& problems);

/// Loads the stored properties of a node into its object; ports are left to the caller. What does
/// not fit is reported and left out, and properties that the type does not know are warned of.
/// @param values set over the stored ones afterwards; a stored reference that one of them replaces
///        is not looked up
/// @returns the stored properties without those that do not fit
std::vector<DocumentProperty> LoadStored(const GraphStore& graph, const GraphNode& node,
                                         const DocumentNode& stored,
                                         const std::vector<DocumentProperty>& values,
                                         ProblemList& problems);

/// A new object with the stored properties of a node, before ports are built: what of the node
/// differs from it was set since, or settled by the node itself.
PluginNode MakeAsStored(const GraphStore& graph, const GraphNode& node);

/// The change that adds a node as it stands, at the place at which it stands.
AddNode DescribeNode(const GraphStore& graph, std::size_t index);

} // namespace Mox::Host
