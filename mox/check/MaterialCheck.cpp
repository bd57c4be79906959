#include "mox/check/MaterialCheck.h"

#include "mox/check/GraphRules.h"
#include "mox/document/DocumentInputs.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/MaterialProgram.h"

namespace Mox::Host {

ProblemList CheckMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                          const Environment& environment, const ProgramFormat* format)
{
    ProblemList problems;
    const MaterialGraph graph = OpenMaterial(file, plugins, problems);
    CheckMaterial(graph, file, environment, format, problems);
    return problems;
}

void CheckMaterial(const MaterialGraph& graph, const std::filesystem::path& file,
                   const Environment& environment, const ProgramFormat* format,
                   ProblemList& problems)
{
    WarnOfAwkwardNames(graph, problems);
    WarnOfEqualBindings(graph, problems);
    WarnOfBasicColours(graph, problems);
    WarnOfEmptyGrids(graph, problems);
    WarnOfOpenInputs(graph, environment, problems);
    WarnOfMissingTextures(graph.Document(), file, problems);
    WarnOfStrayBindings(graph, file, problems);

    ProblemList found;
    const CgProgram program = BuildMaterialProgram(graph, environment, {}, found);
    if (format && !problems.HasErrors() && !found.HasErrors())
        WriteProgram(*format, program, graph, file, found);
    problems.Append(found);
    ReportFailedBindings(graph, problems);
}

} // namespace Mox::Host
