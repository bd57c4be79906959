#pragma once

#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"

#include <filesystem>

namespace Mox::Host {

/// Finds all that can be found out about one material in one go: what keeps it from being exported,
/// and what somebody should look at, such as two bindings of one name. The rules are listed in
/// docs/checks.md.
ProblemList CheckMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                          const Environment& environment);

} // namespace Mox::Host
