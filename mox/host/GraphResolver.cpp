#include "mox/host/GraphResolver.h"

#include "mox/Text.h"
#include "mox/host/GraphOrder.h"
#include "mox/host/LibraryCall.h"

#include <algorithm>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPort;

class GraphResolver
{
public:
    explicit GraphResolver(const MaterialGraph& graph)
        : _graph(graph), _inEdges(graph.Nodes().size()), _outEdges(graph.Nodes().size())
    {
        for (const MaterialGraph::Edge& edge : graph.Edges()) {
            if (graph.IsLoose(edge))
                continue;
            _inEdges[edge.Head].push_back(&edge);
            _outEdges[edge.Tail].push_back(&edge);
        }
    }

    void Resolve()
    {
        const std::vector<std::size_t> order = OrderByEdges();
        for (const MaterialGraph::Node& node : _graph.Nodes()) {
            Forget(node.Gui->InputPorts);
            Forget(node.Gui->OutputPorts);
        }
        for (const std::size_t node : order)
            ResolveCounts(node);
        for (auto node = order.rbegin(); node != order.rend(); ++node)
            ResolvePrecisions(*node);
    }

private:
    std::vector<std::size_t> OrderByEdges() const
    {
        std::vector<OrderLink> links;
        links.reserve(_graph.Edges().size());
        for (const MaterialGraph::Edge& edge : _graph.Edges()) {
            if (!_graph.IsLoose(edge))
                links.emplace_back(edge.Tail, edge.Head);
        }
        GraphOrder order = OrderNodes(_graph.Nodes().size(), links);
        if (order.Cycle.empty())
            return std::move(order.Order);
        std::string path;
        for (const std::size_t node : order.Cycle)
            path += Compose("\"", _graph.Nodes()[node].Id, "\" -> ");
        const MaterialGraph::Node& first = _graph.Nodes()[order.Cycle.front()];
        throw HostError(first.Where,
                        Compose("edges run in a circle: ", path, "\"", first.Id, "\""));
    }

    static void Forget(std::vector<GuiPort>& ports)
    {
        for (GuiPort& port : ports) {
            port.CountConflict = false;
            port.CountKnown = port.CountFixed;
            port.PrecisionKnown = port.PrecisionFixed;
        }
    }

    void ResolveCounts(std::size_t index)
    {
        const MaterialGraph::Node& node = _graph.Nodes()[index];
        for (const MaterialGraph::Edge* edge : _inEdges[index]) {
            const GuiPort& output = OutputOf(*edge);
            GuiPort& input = InputOf(*edge);
            if (input.CountFixed || !output.CountKnown)
                continue;
            input.ComponentCount = output.ComponentCount;
            input.CountKnown = true;
        }
        CallLibrary(node.Where, [&] { node.Gui->ResolveComponentCounts(); });
        RequireAgreement(node);
    }

    static void RequireAgreement(const MaterialGraph::Node& node)
    {
        std::string counts;
        for (const GuiPort& port : node.Gui->InputPorts) {
            if (!port.CountConflict)
                continue;
            counts += Compose(counts.empty() ? "" : ", ", "\"", port.Name, "\"");
            if (port.CountKnown)
                counts += Compose(" has ", port.ComponentCount);
        }
        if (!counts.empty())
            throw HostError(node.Where, Compose("component counts do not agree: ", counts));
    }

    void ResolvePrecisions(std::size_t index)
    {
        const MaterialGraph::Node& node = _graph.Nodes()[index];
        for (const MaterialGraph::Edge* edge : _outEdges[index]) {
            const GuiPort& input = InputOf(*edge);
            GuiPort& output = OutputOf(*edge);
            if (output.PrecisionFixed || !input.PrecisionKnown ||
                input.Precision != ComponentType::Float)
                continue;
            output.Precision = ComponentType::Float;
            output.PrecisionKnown = true;
        }
        CallLibrary(node.Where, [&] { node.Gui->ResolvePrecisions(); });
    }

    GuiPort& OutputOf(const MaterialGraph::Edge& edge) const
    {
        return _graph.Nodes()[edge.Tail].Gui->GetOutputPort(edge.Gui->TailPort);
    }

    GuiPort& InputOf(const MaterialGraph::Edge& edge) const
    {
        return _graph.Nodes()[edge.Head].Gui->GetInputPort(edge.Gui->HeadPort);
    }

    const MaterialGraph& _graph;
    std::vector<std::vector<const MaterialGraph::Edge*>> _inEdges;
    std::vector<std::vector<const MaterialGraph::Edge*>> _outEdges;
};

} // namespace

void ResolveGraph(const MaterialGraph& graph)
{
    GraphResolver(graph).Resolve();
}

} // namespace Mox::Host
