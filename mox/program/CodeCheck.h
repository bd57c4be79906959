#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramCode.h"

#include <memory>
#include <string>

namespace Mox::Host {

/// Reads the functions of both stages as Cg. What is not understood is an error of the rule "code"
/// with the node whose function it is in, and line and column inside the function's body, or inside
/// its head or the environment's code if it is there. The entry points are not read: they only call
/// these functions, with values whose types ProgramGraph has checked.
/// @param file of the material, for messages
/// @returns what was read, which is the program's Code
std::shared_ptr<const ProgramCode> CheckCode(const CgProgram& program, const std::string& file,
                                             ProblemList& problems);

} // namespace Mox::Host
