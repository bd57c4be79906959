#include "mox/graph/OpenMaterial.h"

#include "mox/document/UnknownNode.h"
#include "mox/graph/GraphResolver.h"

#include <utility>

namespace Mox::Host {

MaterialGraph LoadMaterial(MaterialDocument document, NodeMaker maker, ProblemList& problems)
{
    MaterialGraph material(std::move(document), std::move(maker));
    // The graph does not store suggestions, because they depend on nodes that may change.
    ProblemList found;
    material.ReportProblems(found);
    problems.Append(WithSuggestions(found, material.Document()));
    return material;
}

MaterialGraph LoadMaterial(MaterialDocument document, const PluginSet& plugins,
                           ProblemList& problems)
{
    return LoadMaterial(std::move(document), NodeMaker(plugins), problems);
}

MaterialGraph OpenMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                           ProblemList& problems)
{
    return OpenMaterial(ReadMaterialDocument(file, problems), plugins, problems);
}

MaterialGraph OpenMaterial(MaterialDocument document, const PluginSet& plugins,
                           ProblemList& problems)
{
    MaterialGraph graph = LoadMaterial(std::move(document), plugins, problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    return graph;
}

} // namespace Mox::Host
