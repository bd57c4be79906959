#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"

namespace Mox::Host {

/// Rules about the authoring graph of a material, one function each. All but the first are warnings
/// about a material that exports all the same.

/// An error for each node that fails to make its bindings, unless another error names it already.
void ReportFailedBindings(const MaterialGraph& graph, ProblemList& problems);

/// A name of a binding that is no Cg name, or a word that Cg has itself: the program bears another.
void WarnOfAwkwardNames(const MaterialGraph& graph, ProblemList& problems);

/// Two bindings with one name, which the host cannot tell apart.
void WarnOfEqualBindings(const MaterialGraph& graph, ProblemList& problems);

/// More than one constant, or more than one texture, as the basic colour.
void WarnOfBasicColours(const MaterialGraph& graph, ProblemList& problems);

/// A grid of frames without rows or columns, whose text does not compile.
void WarnOfEmptyGrids(const MaterialGraph& graph, ProblemList& problems);

/// An input without an edge that reads as 0 at a node without a number, so that no value of its own
/// can be meant.
void WarnOfOpenInputs(const MaterialGraph& graph, const Environment& environment,
                      ProblemList& problems);

/// Values that the document holds for a binding that no node makes.
void WarnOfStrayBindings(const MaterialGraph& graph, const std::filesystem::path& document,
                         ProblemList& problems);

} // namespace Mox::Host
