#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"
#include "mox/shader/ShaderGraphGenerator.h"

namespace Mox::Host {

/// The shader graph of one material, and the origins of its nodes.
struct GeneratedShader
{
    ShaderGraph Graph;
    ShaderOrigins Origins;
};

/// Lets every node of a resolved graph write itself to shader.Graph, in node order, and connects
/// the results. If a node fails, the others are still written; uniforms replace its missing
/// results, so that later stages can find further problems.
/// @param shader must have an empty graph; nodes use its providers
/// @param problems receives an error for each node that cannot be exported and each edge that
///        cannot be converted. If the graph is not resolved, receives only an error that reports
///        this, and nothing is written
void GenerateShaderGraph(const MaterialGraph& graph, GeneratedShader& shader,
                         ProblemList& problems);

} // namespace Mox::Host
