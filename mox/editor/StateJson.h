#pragma once

#include "mox/graph/ChangeHistory.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/json/JsonText.h"

#include <set>
#include <string>

namespace Mox::Host {

/// The whole state of a material as an editor shows it: the records of its document, each node and
/// edge with its number, and the title, ports and properties that a node's class gives it.
Json DescribeState(const MaterialGraph& graph);

/// The nodes of these ids in the same form.
Json DescribeNodes(const MaterialGraph& graph, const std::set<std::string>& ids);

/// The part of the state that belongs to some records: nodes, edges and annotations as they are
/// now, the numbers of those that no longer exist, and the other parts of the document if they are
/// included.
Json DescribeChanges(const MaterialGraph& graph, const ChangedRecords& records);

} // namespace Mox::Host
