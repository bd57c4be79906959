#pragma once

#include "mox/graph/MaterialGraph.h"
#include "tests/support/GraphEditor.h"

#include <functional>

/// Edits a graph until isOver returns true, and undoes about every fourth edit. At the end it
/// undoes and redoes all edits. After about every eighth edit, and at the end, the graph must equal
/// the one loaded from its written document.
/// @param maker that creates the nodes of the graph
/// @returns the number of edits that were accepted
/// @throws std::logic_error if an invariant does not hold
int CheckEdits(Mox::Host::MaterialGraph& graph, const Mox::Host::NodeMaker& maker,
               const GraphEditor::Choice& choose, const std::function<bool()>& isOver);
