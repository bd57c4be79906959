#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramGraph.h"

namespace Mox::Host {

/// Reports, at the node responsible, what no language can express: names longer than 1000
/// characters, and numbers that are not finite, which are written as "inf" or "nan". GLSL
/// guarantees 1024 characters; the difference is reserved for suffixes that make names unique.
void CheckProgramLimits(const ProgramGraph& graph, ProblemList& problems);

} // namespace Mox::Host
