#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/json/JsonCursor.h"

#include <set>
#include <string>

namespace Mox::Host {

/// Describes the complete state of a material as an editor shows it: the records of its document,
/// each node and edge with its number, and the title, ports and properties that the node's class
/// defines.
Json DescribeState(const MaterialGraph& graph);

/// Reads a document from such a state. Only the records are used: the numbers and what the nodes'
/// classes define are ignored. Comments that do not belong to a record are not part of a state.
/// @throws HostError as JsonCursor does
MaterialDocument ReadState(const JsonCursor& state);

/// Describes the nodes with these ids in the same format.
Json DescribeNodes(const MaterialGraph& graph, const std::set<std::string>& ids);

/// Describes the part of the state that belongs to the given records: nodes, edges and annotations
/// as they are now, the numbers of those that no longer exist, and the other parts of the document
/// if they are included.
Json DescribeChanges(const MaterialGraph& graph, const ChangedRecords& records);

} // namespace Mox::Host
