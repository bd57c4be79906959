#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramFormat.h"

#include <filesystem>

namespace Mox::Host {

/// Finds all that can be found out about one material in one go: what keeps it from being exported,
/// and what somebody should look at, such as two bindings of one name. The rules are listed in
/// docs/checks.md.
/// @param graph as OpenMaterial gives it
/// @param file from which texture files are looked for
/// @param format a format in which the programs are written to see that they can be, or null
/// @param problems of reading and opening the material; takes what else is found
void CheckMaterial(const MaterialGraph& graph, const std::filesystem::path& file,
                   const Environment& environment, const ProgramFormat* format,
                   ProblemList& problems);

} // namespace Mox::Host
