#include "mox/host/OpenMaterial.h"

#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialLoader.h"

namespace Mox::Host {

MaterialGraph OpenMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                           ProblemList& problems)
{
    const MaterialDocument document = ReadMaterialDocument(file, problems);
    MaterialGraph graph = LoadMaterial(document, plugins, problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    return graph;
}

} // namespace Mox::Host
