#include "mox/host/OpenMaterial.h"

#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialLoader.h"

namespace Mox::Host {

MaterialGraph OpenMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                           ProblemList& problems)
{
    MaterialDocument document;
    try {
        document = ReadMaterialDocument(file);
    } catch (const HostError& error) {
        problems.Fail("document", error);
    }
    MaterialGraph graph = LoadMaterial(document, plugins, problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    return graph;
}

} // namespace Mox::Host
