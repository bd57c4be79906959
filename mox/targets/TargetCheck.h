#pragma once

#include "mox/host/Problem.h"
#include "mox/program/ProgramFormat.h"
#include "mox/program/ProgramPlan.h"
#include "mox/targets/CompileTarget.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Finds what a program needs that targets have no counterpart for: registers, and kinds of
/// textures. Each is an error of the rule "target" with the node that needs it.
/// @param file of the material, for messages
void CheckTargets(const ProgramPlan& plan, const std::vector<CompileTarget>& targets,
                  const std::string& file, ProblemList& problems);

/// A format without texts, which finds what a program needs that some target has no counterpart
/// for.
class TargetCheck : public ProgramFormat
{
public:
    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<std::string> Write(const CgProgram& program, const std::string& file,
                                   ProblemList& problems) const override;

private:
    std::vector<std::string> _endings;
};

} // namespace Mox::Host
