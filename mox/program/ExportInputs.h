#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

#include <filesystem>
#include <vector>

namespace Mox::Host {

/// The files besides the document that an export hangs on: textures, the environment, and all
/// plug-ins, since a type comes from the first one that offers it.
std::vector<std::filesystem::path> ExportInputs(const MaterialGraph& graph,
                                                const std::filesystem::path& document,
                                                const Environment& environment,
                                                const PluginSet& plugins);

} // namespace Mox::Host
