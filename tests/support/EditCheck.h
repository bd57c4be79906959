#pragma once

#include "mox/graph/MaterialGraph.h"
#include "tests/support/GraphEditor.h"

#include <functional>

/// Makes edits of a graph until it is over, now and then undoes one, in the end all of them, and
/// does them all again. After every tenth edit, and in the end, the graph must be what its document
/// gives when it is written, read and loaded anew.
/// @param maker of the graph
/// @returns the number of edits that were not refused
/// @throws std::logic_error if something does not hold
int CheckEdits(Mox::Host::MaterialGraph& graph, const Mox::Host::NodeMaker& maker,
               const GraphEditor::Choice& choose, const std::function<bool()>& isOver);
