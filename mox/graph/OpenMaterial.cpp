#include "mox/graph/OpenMaterial.h"

#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"

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
