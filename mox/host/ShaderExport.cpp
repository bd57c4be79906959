#include "mox/host/ShaderExport.h"

#include "mox/Text.h"
#include "mox/host/LibraryCall.h"

namespace Mox::Host {

using Materials::Compose;

void GenerateShaderGraph(const MaterialGraph& graph, ShaderGraph& shaderGraph)
{
    ShaderGraphGenerator generator(shaderGraph);
    for (const MaterialGraph::Node& node : graph.Nodes())
        CallLibrary(node.Where, [&] { node.Gui->GenerateShader(generator); });
    JoinEdges(graph, generator);
}

void JoinEdges(const MaterialGraph& graph, ShaderGraphGenerator& generator)
{
    for (const MaterialGraph::Edge& edge : graph.Edges()) {
        const auto entry = generator.EdgeMap.find(edge.Gui);
        if (entry == generator.EdgeMap.end() || !entry->second.Tail)
            continue;
        const ShaderEdgeRecord& record = entry->second;
        for (std::size_t i = 0; i < record.Heads.size(); ++i) {
            try {
                CallLibrary(edge.Where, [&] {
                    generator.Connect(record.Tail, record.TailPort, record.Heads[i],
                                      record.HeadPorts[i]);
                });
            } catch (const HostError& error) {
                throw HostError(error.Where,
                                Compose("edge from \"", graph.Nodes()[edge.Tail].Id, "\" port \"",
                                        edge.Gui->TailPort, "\" to \"", graph.Nodes()[edge.Head].Id,
                                        "\" port \"", edge.Gui->HeadPort, "\": ", error.Message));
            }
        }
    }
}

} // namespace Mox::Host
