#pragma once

#include "mox/compile/ProgramCompiler.h"
#include "mox/program/ProgramFormat.h"

namespace Mox::Host {

/// Programs compiled to other languages, with a reflection document that says what stands where.
class CompiledFormat : public ProgramFormat
{
public:
    /// @param targets at least one
    explicit CompiledFormat(std::vector<CompileTarget> targets);

    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<std::string> Write(const CgProgram& program, const std::string& file,
                                   ProblemList& problems) const override;

private:
    ProgramCompiler _compiler;
    std::vector<CompileTarget> _targets;
    std::vector<std::string> _endings;
};

/// Writes nothing and reports what does not compile, far faster than CompiledFormat does.
class CompileCheck : public ProgramFormat
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
