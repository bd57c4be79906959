#pragma once

#include "mox/graph/ChangeHistory.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/json/JsonText.h"

namespace Mox::Host {

/// The whole state of a material as an editor shows it: the records of its document, each node and
/// edge with its number, and of each node what its class makes of the record.
Json DescribeState(const MaterialGraph& graph);

/// The part of the state that some records concern: nodes and edges with what they are now, the
/// numbers of those that are gone, and the other parts of the document if they are among it.
Json DescribeChanges(const MaterialGraph& graph, const ChangedRecords& records);

} // namespace Mox::Host
