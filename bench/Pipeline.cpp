#include "Pipeline.h"

#include "Stopwatch.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/MaterialProgram.h"
#include "mox/targets/TargetFormat.h"

#include <optional>

namespace Mox::Bench {

Workshop::Workshop() : Environment(Host::ReadEnvironment(MOX_ENVIRONMENT_FOLDER))
{
    Plugins.LoadFolder(MOX_PLUGIN_FOLDER);
}

PipelineTimes RunPipeline(const Workshop& workshop, const std::filesystem::path& document,
                          Language language)
{
    // A new format object each time: one that has written the program before would return a cached
    // result.
    const Host::TargetFormat essl({Host::CompileTarget::Essl}, Languages::Precision::Full, {});
    PipelineTimes times;
    Stopwatch watch;
    std::optional<Host::MaterialDocument> records = Host::ReadMaterialDocument(document);
    times.Read = watch.Lap();
    std::optional<Host::ProblemList> problems(std::in_place);
    std::optional<Host::MaterialGraph> graph =
        Host::LoadMaterial(*records, workshop.Plugins, *problems);
    times.Load = watch.Lap();
    Host::ResolveGraph(*graph, *problems);
    times.Resolve = watch.Lap();
    std::optional<Host::CgProgram> program =
        Host::BuildMaterialProgram(*graph, workshop.Environment, {}, *problems);
    times.Write = watch.Lap();
    if (language == Language::Essl) {
        const auto files = essl.Write(*program, document.string(), *problems);
        times.Spell = watch.Lap();
    }
    problems->ThrowFirstError();
    watch.Lap();
    program.reset();
    problems.reset();
    graph.reset();
    records.reset();
    times.Free = watch.Lap();
    return times;
}

} // namespace Mox::Bench
