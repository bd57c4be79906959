#pragma once

#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramPlan.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/program/StageCopies.h"
#include "mox/shader/ShaderGraph.h"

namespace Mox::Host {

/// Plans the vertex and the fragment program of a complete shader graph.
///
/// The plan depends on the graph alone, not on addresses, the locale or the order of edges.
/// @param copies of what interpolated values both stages need; does not change the picture
/// @param problems takes all that stands in the way of a program; with an error among them the
///        result is of no use
ProgramPlan PlanProgram(const ShaderGraph& graph, const ShaderOrigins& origins,
                        const Environment& environment, StageCopies copies, ProblemList& problems);

} // namespace Mox::Host
