#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"

#include <filesystem>

namespace Mox::Host {

/// Reads a material from a file, makes its authoring graph and resolves it.
/// @param problems takes all that is wrong on the way; with an error among them the graph lacks
///        what the errors name
MaterialGraph OpenMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                           ProblemList& problems);

} // namespace Mox::Host
