#pragma once

#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"

#include <vector>

namespace Mox::Host {

/// The functions that nodes bring along for their bodies to call. Each is a function node without
/// ports in the shader graph: its name is that of the functions and its code their definitions. It
/// has no edges, so nothing but a call by name leads to it. Nodes that bring the same one share it.
/// @param problems takes names with two definitions, with the node that brought the second one
std::vector<EnvironmentCode>
FindHelperFunctions(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems);

} // namespace Mox::Host
