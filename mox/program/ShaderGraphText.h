#pragma once

#include "mox/shader/ShaderGraph.h"

#include <string>

namespace Mox::Host {

/// Formats a shader graph for reading: every node in insertion order, numbered from 1, with its
/// description and the code of its function, then every edge by the numbers of its nodes.
/// @throws ShaderError if a node has no description
std::string FormatShaderGraph(const ShaderGraph& graph);

} // namespace Mox::Host
