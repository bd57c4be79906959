#pragma once

#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramPlan.h"
#include "mox/program/ProgramStage.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"

namespace Mox::Host {

/// Plans the vertex and the fragment program of a complete shader graph.
///
/// The plan depends only on the graph, not on addresses, the locale or the order of edges.
/// @param copies what to do with copies of interpolated values that both stages need; does not
///        change the image
/// @param problems receives the problems of the graph; if there is an error, the result must not be
///        used
ProgramPlan PlanProgram(const ShaderGraph& graph, const ShaderOrigins& origins,
                        const Environment& environment, StageCopies copies, ProblemList& problems);

} // namespace Mox::Host
