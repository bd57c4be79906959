#pragma once

#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"

#include <vector>

namespace Mox::Host {

/// Finds the helper functions that nodes supply for their bodies to call. In the shader graph, each
/// is a function node without ports: its name is that of the helper and its code the definition.
/// It has no edges and is only reached by name. Nodes that supply the same helper share it.
/// @param problems receives names with two definitions, at the node that supplied the second
std::vector<EnvironmentCode>
FindHelperFunctions(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems);

} // namespace Mox::Host
