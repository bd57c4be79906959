#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramFormat.h"
#include "mox/program/ProgramPlan.h"
#include "mox/targets/CompileTarget.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Finds registers and texture types that the program needs but the targets do not support. Each is
/// reported as an error under the rule "target" with the node that needs it.
/// @param file the file of the material, for messages
void CheckTargets(const ProgramPlan& plan, const std::vector<CompileTarget>& targets,
                  const std::string& file, ProblemList& problems);

/// A format without output files, which only reports registers and texture types that some target
/// does not support.
class TargetCheck : public ProgramFormat
{
public:
    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<ProgramFile> Write(const CgProgram& program, const std::string& file,
                                   ProblemList& problems) const override;

private:
    std::vector<std::string> _endings;
};

} // namespace Mox::Host
