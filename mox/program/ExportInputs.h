#pragma once

#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

#include <filesystem>
#include <vector>

namespace Mox::Host {

/// The files besides the document on which programs depend: the environment, and all plug-ins,
/// since a type comes from the first one that offers it. Textures are not among them: programs name
/// their parameters and contain nothing of their pixels.
std::vector<std::filesystem::path> ExportInputs(const Environment& environment,
                                                const PluginSet& plugins);

} // namespace Mox::Host
