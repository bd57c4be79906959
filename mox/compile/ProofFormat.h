#pragma once

#include "mox/compile/ProgramCompiler.h"
#include "mox/program/ProgramFormat.h"

namespace Mox::Host {

/// A format without texts: it shows whether programs compile, far faster than compiling them.
class ProofFormat : public ProgramFormat
{
public:
    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<std::string> Write(const CgProgram& program, const std::string& file,
                                   ProblemList& problems) const override;

private:
    ProgramCompiler _compiler;
    std::vector<std::string> _endings;
};

} // namespace Mox::Host
