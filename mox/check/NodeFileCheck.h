#pragma once

#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Finds the problems of the node files in folders: unreadable files, duplicate types, defaults
/// outside their range, and code that does not compile. For each type, a node generates its
/// function for one to four components, float and half, every setting, and with and without edges
/// at its ports.
/// @param plugins must have been loaded with these folders as node file folders
void CheckNodeFiles(const std::vector<std::string>& folders, const PluginSet& plugins,
                    const Environment& environment, ProblemList& problems);

} // namespace Mox::Host
