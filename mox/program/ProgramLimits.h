#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramGraph.h"

namespace Mox::Host {

/// Reports, at the node that it comes from, what programs cannot contain in any language: a name of
/// more than 1000 characters, and a number that is not finite, which is written as "inf" or "nan".
/// GLSL guarantees 1024 characters; the rest is for what is appended to names to keep them apart.
void CheckProgramLimits(const ProgramGraph& graph, ProblemList& problems);

} // namespace Mox::Host
