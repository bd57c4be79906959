#include "mox/targets/TargetFormat.h"

#include "mox/Text.h"
#include "mox/targets/Reflection.h"

#include <utility>

namespace Mox::Host {

TargetFormat::TargetFormat(std::vector<CompileTarget> targets, Languages::Precision precision,
                           SpirvMaker makeSpirv)
    : _targets(std::move(targets)), _precision(precision), _makeSpirv(std::move(makeSpirv))
{
    for (const CompileTarget target : _targets) {
        for (const ProgramStage stage : bothStages)
            _endings.push_back(
                Materials::Compose(".", GetStageName(stage), ".", GetTargetEnding(target)));
    }
    _endings.emplace_back(".reflection.json");
}

std::vector<ProgramFile> TargetFormat::Write(const CgProgram& program, const std::string& file,
                                             ProblemList& problems) const
{
    return _made.Get(program, [&]() -> std::vector<ProgramFile> {
        CompiledProgram translated =
            Translate(program, _targets, _precision, _makeSpirv, file, problems);
        if (problems.HasErrors())
            return {};
        std::vector<ProgramFile> files;
        std::string reflection = FormatReflection(translated);
        for (TargetProgram& target : translated.Programs)
            files.push_back({std::move(target.Bytes), target.Stage, std::move(target.CgLines)});
        files.push_back({std::move(reflection)});
        return files;
    });
}

} // namespace Mox::Host
