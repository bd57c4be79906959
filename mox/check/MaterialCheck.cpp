#include "mox/check/MaterialCheck.h"

#include "mox/check/GraphRules.h"
#include "mox/host/OpenMaterial.h"
#include "mox/program/MaterialProgram.h"

namespace Mox::Host {

ProblemList CheckMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                          const Environment& environment)
{
    ProblemList problems;
    const MaterialGraph graph = OpenMaterial(file, plugins, problems);
    WarnOfAwkwardNames(graph, problems);
    WarnOfEqualBindings(graph, problems);
    WarnOfBasicColours(graph, problems);
    WarnOfEmptyGrids(graph, problems);
    WarnOfOpenInputs(graph, problems);
    WarnOfMissingTextures(graph, file, problems);
    WarnOfStrayBindings(graph, file, problems);

    ProblemList found;
    BuildMaterialProgram(graph, environment, {}, found);
    problems.Append(found);
    return problems;
}

} // namespace Mox::Host
