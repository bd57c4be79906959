#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramFormat.h"

#include <filesystem>

namespace Mox::Host {

/// Finds all problems of a material in one pass: errors that prevent its export, and possible
/// mistakes, such as two bindings with the same name. The rules are listed in docs/checks.md.
/// @param graph as returned by OpenMaterial
/// @param file that texture file names are relative to
/// @param format in which programs are generated to check that this succeeds, or null
/// @param problems of reading and opening the material; receives all others
void CheckMaterial(const MaterialGraph& graph, const std::filesystem::path& file,
                   const Environment& environment, const ProgramFormat* format,
                   ProblemList& problems);

} // namespace Mox::Host
