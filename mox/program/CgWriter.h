#pragma once

#include "mox/program/CgProgram.h"

#include <string>
#include <vector>

namespace Mox::Host {

struct ProgramOptions
{
    bool WithComments = true; ///< names the nodes that a function comes from
    std::string Version = {}; ///< for the header; programs have none if it is empty
};

/// Writes both programs of a plan in Cg.
CgProgram WriteCg(ProgramPlan plan, const ProgramOptions& options);

/// The head of a function: name and parameters in brackets.
std::string FormatSignature(const std::string& name, const std::vector<ShaderPort>& inputs,
                            const std::vector<ShaderPort>& outputs);

} // namespace Mox::Host
