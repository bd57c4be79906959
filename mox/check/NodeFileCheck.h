#pragma once

#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Finds what is wrong with the node files of folders: files that cannot be read, types that exist
/// twice, defaults outside their range, and code that is not understood. Each function is written
/// by a node of the type for one to four components, float and half, every setting, and with and
/// without edges at its ports.
/// @param plugins must have been loaded with these folders among those of node files
void CheckNodeFiles(const std::vector<std::string>& folders, const PluginSet& plugins,
                    const Environment& environment, ProblemList& problems);

} // namespace Mox::Host
