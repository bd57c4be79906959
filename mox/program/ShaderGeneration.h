#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"
#include "mox/shader/ShaderGraphGenerator.h"

namespace Mox::Host {

/// The shader graph of one material, with what is known of its nodes.
struct GeneratedShader
{
    ShaderGraph Graph;
    ShaderOrigins Origins;
};

/// Lets every node of a resolved graph write itself into shader.Graph, in the order of the nodes,
/// and joins the results. A node that fails does not keep the others from writing: where its
/// results are missing stand uniforms, so that what comes next can go on looking for problems.
/// @param shader has an empty graph; its providers answer what nodes ask for
/// @param problems takes each node that cannot be exported, and each edge that does not convert; or
///        that the graph is not resolved, and then nothing is written
void GenerateShaderGraph(const MaterialGraph& graph, GeneratedShader& shader,
                         ProblemList& problems);

} // namespace Mox::Host
