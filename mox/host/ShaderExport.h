#pragma once

#include "mox/host/MaterialGraph.h"
#include "mox/shader/ShaderGraph.h"
#include "mox/shader/ShaderGraphGenerator.h"

namespace Mox::Host {

/// Lets every node of a resolved graph write itself into shaderGraph, in the order of the nodes,
/// and joins the results.
/// @throws HostError naming the node that cannot be exported, or the edge that does not convert
void GenerateShaderGraph(const MaterialGraph& graph, ShaderGraph& shaderGraph);

/// The final pass: lays the recorded edges between the shader nodes that the authoring nodes
/// became, in the order of the authoring edges, so that the result does not hang on addresses.
///
/// An edge without a recorded tail or without recorded heads joins nothing and is skipped: its
/// output or input took no part in what the node wrote, and the value is read nowhere.
/// @throws HostError naming the edge whose ports or types do not fit
void JoinEdges(const MaterialGraph& graph, ShaderGraphGenerator& generator);

} // namespace Mox::Host
