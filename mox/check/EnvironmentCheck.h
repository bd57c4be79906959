#pragma once

#include "mox/host/Problem.h"
#include "mox/program/Environment.h"

namespace Mox::Host {

/// Finds the problems of an environment that do not depend on a material: code and bodies that do
/// not compile with the types of their inputs, invalid defaults, undefined values, entries that
/// never apply, and functions that are never called.
/// @param problems receives each problem with the file and line of its cause
void CheckEnvironment(const Environment& environment, ProblemList& problems);

} // namespace Mox::Host
