#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramCode.h"

#include <memory>
#include <string>

namespace Mox::Host {

/// Parses the functions of both stages as Cg. Code that cannot be parsed is an error with the rule
/// "code". The error names the node that the function belongs to, and the line and column within
/// the function's body, or within its head or the environment's code if the error is there.
/// The entry points are not parsed: they only call these functions, with arguments whose types
/// ProgramGraph has checked.
/// @param file of the material, for messages
/// @returns the parsed functions, to be stored in the program's Code
std::shared_ptr<const ProgramCode> CheckCode(const CgProgram& program, const std::string& file,
                                             ProblemList& problems);

} // namespace Mox::Host
