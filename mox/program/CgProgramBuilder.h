#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CgProgram.h"
#include "mox/program/Environment.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"

#include <map>
#include <string>

namespace Mox::Host {

struct ProgramOptions
{
    bool WithComments = true; ///< says which nodes a function comes from
};

/// Writes the vertex and the fragment program of a complete shader graph.
///
/// The text hangs on the graph alone, not on addresses, the locale or the order of edges.
/// @param originalNames what nodes call parameters whose name in the graph is a stand-in
/// @param problems takes all that stands in the way of a program; with an error among them the
///        result is of no use
CgProgram BuildCgProgram(const ShaderGraph& graph, const ShaderOrigins& origins,
                         const std::map<std::string, std::string>& originalNames,
                         const Environment& environment, const ProgramOptions& options,
                         ProblemList& problems);

} // namespace Mox::Host
