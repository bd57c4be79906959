#pragma once

#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ShaderOrigins.h"
#include "mox/shader/ShaderGraph.h"

#include <cstddef>
#include <set>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Returns the indices of the pieces of environment code that the bodies call, directly or through
/// other pieces. Any occurrence of a function's name as a word counts as a call.
std::set<std::size_t> FindCalledCode(const std::vector<EnvironmentCode>& code,
                                     const std::vector<std::string_view>& bodies);

/// Finds the helper functions that nodes supply for their bodies to call. In the shader graph, each
/// is a function node without ports: its name is that of the helper and its code the definition.
/// It has no edges and is only reached by name. Nodes that supply the same helper share it.
/// @param problems receives an error for each name with two definitions, at the node that supplied
///        the second one
std::vector<EnvironmentCode>
FindHelperFunctions(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems);

} // namespace Mox::Host
