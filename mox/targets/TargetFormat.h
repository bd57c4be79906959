#pragma once

#include "mox/program/ProgramFormat.h"
#include "mox/targets/MadePrograms.h"
#include "mox/targets/ProgramTranslator.h"

namespace Mox::Host {

/// Writes programs in languages other than Cg, with a reflection document. Equal programs are
/// translated only once.
class TargetFormat : public ProgramFormat
{
public:
    /// @param targets must not be empty
    /// @param makeSpirv required only for SPIR-V
    TargetFormat(std::vector<CompileTarget> targets, Languages::Precision precision,
                 SpirvMaker makeSpirv);

    const std::vector<std::string>& Endings() const override { return _endings; }
    std::vector<ProgramFile> Write(const CgProgram& program, const std::string& file,
                                   ProblemList& problems) const override;

private:
    std::vector<CompileTarget> _targets;
    Languages::Precision _precision;
    SpirvMaker _makeSpirv;
    mutable MadePrograms _made;
    std::vector<std::string> _endings;
};

} // namespace Mox::Host
