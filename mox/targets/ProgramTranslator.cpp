#include "mox/targets/ProgramTranslator.h"

#include "mox/Text.h"
#include "mox/languages/Languages.h"
#include "mox/program/CodeCheck.h"
#include "mox/targets/StagePair.h"
#include "mox/targets/TargetCheck.h"

#include <stdexcept>

namespace Mox::Host {

namespace {

using Materials::Compose;

TargetProgram TranslateStage(const StagePair& stages, ProgramStage stage, CompileTarget target,
                             Languages::Precision precision, const std::string& header,
                             const SpirvMaker& makeSpirv)
{
    Languages::StageProgram program = stages.StageOf(stage);
    program.Header = header;
    Languages::WrittenStage written = GetTargetLanguage(target).Write(program, precision);
    if (target == CompileTarget::Spirv) {
        written.Text = makeSpirv(written.Text, stage);
        written.SourceLines.clear();
    }
    return {target,
            stage,
            std::move(written.Text),
            std::move(written.SourceLines),
            std::move(written.EntryPoint),
            stages.NamesOfParameters(written.Names)};
}

void ReportInternal(const std::exception& error, const std::string& file, ProblemList& problems)
{
    problems.Fail("compile", Place(file),
                  Compose("internal error of the code generator: ", error.what()));
}

} // namespace

CompiledProgram Translate(const CgProgram& program, const std::vector<CompileTarget>& targets,
                          Languages::Precision precision, const SpirvMaker& makeSpirv,
                          const std::string& file, ProblemList& problems)
{
    CompiledProgram result;
    CheckTargets(program.Plan, targets, file, problems);
    if (problems.HasErrors())
        return result;
    const std::shared_ptr<const ProgramCode> code =
        program.Code ? program.Code : CheckCode(program, file, problems);
    if (problems.HasErrors())
        return result;
    try {
        const StagePair stages(program, *code);
        result.Parameters = stages.Parameters();
        result.Blocks = stages.DescribeBlocks();
        result.Vertex = stages.DescribeInterface(ProgramStage::Vertex);
        result.Fragment = stages.DescribeInterface(ProgramStage::Fragment);
        for (const CompileTarget target : targets) {
            for (const ProgramStage stage : bothStages)
                result.Programs.push_back(
                    TranslateStage(stages, stage, target, precision, program.Header, makeSpirv));
        }
    } catch (const std::logic_error& error) {
        ReportInternal(error, file, problems);
    } catch (const std::runtime_error& error) {
        ReportInternal(error, file, problems);
    }
    return result;
}

} // namespace Mox::Host
