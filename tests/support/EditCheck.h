#pragma once

#include "tests/support/GraphEditor.h"

#include <functional>

/// Edits a graph and claims that nodes agree with edges after each change, that the resolver which
/// follows changes comes to the same as a full run, that a refused change changes nothing, that
/// undoing and redoing restore what was, and that what is saved loads as the same graph.
/// @param graph has a node at least
/// @param choose is asked for every decision
/// @param isOver is asked before each change
/// @returns the number of changes that were not refused
int CheckEdits(Mox::Host::MaterialGraph& graph, const GraphEditor::Choice& choose,
               const std::function<bool()>& isOver);
