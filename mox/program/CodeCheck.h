#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CgProgram.h"

#include <string>

namespace Mox::Host {

/// Reads both stages of a program as Cg. What is not understood is an error of the rule "code" with
/// the node whose function it is in, and line and column inside the function's body, or inside its
/// head or the environment's code if it is there.
/// @param file of the material, for messages
void CheckCode(const CgProgram& program, const std::string& file, ProblemList& problems);

} // namespace Mox::Host
