#pragma once

#include "mox/graph/MaterialGraph.h"
#include "tests/support/GraphEditor.h"

#include <functional>

/// Edits a graph until isOver returns true, and undoes about every fourth edit. After about every
/// eighth edit, the graph must equal the one loaded from its written document. At the end, all
/// edits are undone and redone.
/// @param maker that creates the nodes of the graph
/// @returns the number of edits that were accepted
/// @throws std::logic_error if an invariant does not hold
int CheckEdits(Mox::Host::MaterialGraph& graph, const Mox::Host::NodeMaker& maker,
               const GraphEditor::Choice& choose, const std::function<bool()>& isOver);
