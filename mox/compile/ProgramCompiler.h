#pragma once

#include "mox/compile/SpirvCompiler.h"
#include "mox/targets/ProgramTranslator.h"

#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

/// Spells pairs of programs in all targets, SPIR-V among them. Making the first one costs some
/// milliseconds, so keep it for many programs.
class ProgramCompiler
{
public:
    /// @param optimises whether SPIR-V goes through an optimiser
    explicit ProgramCompiler(bool optimises = false)
        : _compiler(std::make_shared<SpirvCompiler>()), _optimises(optimises)
    {}

    /// Translate with SPIR-V.
    CompiledProgram Compile(const CgProgram& program, const std::vector<CompileTarget>& targets,
                            const std::string& file, ProblemList& problems) const
    {
        return Translate(program, targets, Languages::Precision::Full, MakeSpirv(), file, problems);
    }

    /// Turns texts into SPIR-V; may outlive the object.
    SpirvMaker MakeSpirv() const;

private:
    std::shared_ptr<const SpirvCompiler> _compiler;
    bool _optimises;
};

} // namespace Mox::Host
