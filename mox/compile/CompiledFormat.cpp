#include "mox/compile/CompiledFormat.h"

#include "mox/Text.h"
#include "mox/compile/Reflection.h"

namespace Mox::Host {

CompiledFormat::CompiledFormat(std::vector<CompileTarget> targets) : _targets(std::move(targets))
{
    for (const CompileTarget target : _targets) {
        for (const ProgramStage stage : {ProgramStage::Vertex, ProgramStage::Fragment})
            _endings.push_back(
                Materials::Compose(".", GetStageName(stage), ".", GetTargetEnding(target)));
    }
    _endings.emplace_back(".reflection.json");
}

std::vector<std::string> CompiledFormat::Write(const CgProgram& program, const std::string& file,
                                               ProblemList& problems) const
{
    CompiledProgram compiled = _compiler.Compile(program, _targets, file, problems);
    if (problems.HasErrors())
        return {};
    std::vector<std::string> texts;
    const std::string reflection = FormatReflection(compiled);
    for (TargetProgram& target : compiled.Programs)
        texts.push_back(std::move(target.Bytes));
    texts.push_back(reflection);
    return texts;
}

std::vector<std::string> CompileCheck::Write(const CgProgram& program, const std::string& file,
                                             ProblemList& problems) const
{
    _compiler.Check(program, file, problems);
    return {};
}

} // namespace Mox::Host
