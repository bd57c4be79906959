#pragma once

#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

#include <filesystem>
#include <vector>

namespace Mox::Host {

/// Returns the files, other than the document, that programs depend on: the environment and all
/// plug-ins, since a node type comes from the first plug-in that offers it. Textures are not
/// included: programs contain the names of their parameters but none of their pixels.
std::vector<std::filesystem::path> ExportInputs(const Environment& environment,
                                                const PluginSet& plugins);

} // namespace Mox::Host
