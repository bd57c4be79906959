#pragma once

#include "mox/program/CgProgram.h"

#include <string>
#include <vector>

namespace Mox::Host {

struct ProgramOptions
{
    bool WithComments = true; ///< adds comments that name the nodes each function comes from
    std::string Version = {}; ///< program version for the header comment; no header is written if
                              ///< it is empty
};

/// Writes both programs of a plan in Cg.
CgProgram WriteCg(ProgramPlan plan, const ProgramOptions& options);

/// Formats the head of a function: its name and its parameters in parentheses.
std::string FormatSignature(const std::string& name, const std::vector<ShaderPort>& inputs,
                            const std::vector<ShaderPort>& outputs);

} // namespace Mox::Host
