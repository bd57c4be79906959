#pragma once

#include "mox/host/Problem.h"
#include "mox/program/Environment.h"

namespace Mox::Host {

/// Finds what is wrong with an environment, whatever the materials are: code and bodies that are
/// not understood at the types of their inputs, defaults that do not fit, values that nothing
/// defines, entries that never apply, and functions that nothing can call.
/// @param problems takes each with the file and the line of its cause
void CheckEnvironment(const Environment& environment, ProblemList& problems);

} // namespace Mox::Host
