#pragma once

#include "mox/shader/ShaderGraph.h"

#include <string>

namespace Mox::Host {

/// A finished shader graph for people to read: every node in order of insertion, numbered from 1,
/// by its description and with the code of its function, then every edge between the numbers.
/// @throws ShaderError if a node has no description
std::string FormatShaderGraph(const ShaderGraph& graph);

} // namespace Mox::Host
