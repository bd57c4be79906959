#include "mox/graph/EdgeRules.h"

#include "mox/Text.h"

namespace Mox::Host {

using Materials::Compose;

namespace {

/// "a" -> "b" -> "a"
std::string FormatCircle(const GraphStore& graph, const std::vector<std::size_t>& circle)
{
    std::string path;
    for (const std::size_t node : circle)
        path += Compose("\"", graph.Nodes()[node].Id, "\" -> ");
    return Compose(path, "\"", graph.Nodes()[circle.front()].Id, "\"");
}

/// Reports the failure of looking a port up that has not been found.
template <class LookUp>
bool HasPort(const GraphNode& node, std::int32_t found, const Place& where, ProblemList& problems,
             LookUp lookUp)
{
    if (node.IsPlaceholder || found >= 0)
        return true;
    try {
        lookUp(Place(where.File, where.Line, node.Id));
        return true;
    } catch (const HostError& error) {
        problems.Fail("unknown-port", error);
        return false;
    }
}

} // namespace

bool CheckEdge(const GraphStore& graph, std::size_t tail, const std::string& tailPort,
               std::size_t head, const std::string& headPort, const Place& where,
               ProblemList& problems)
{
    const GraphNode& tailNode = graph.Nodes()[tail];
    const GraphNode& headNode = graph.Nodes()[head];
    if (tail == head) {
        problems.Fail("self-edge", where, Compose("node \"", tailNode.Id, "\" cannot feed itself"));
        return false;
    }
    const bool hasOutput =
        HasPort(tailNode, tailNode.Gui.FindOutputPort(tailPort), where, problems,
                [&](const Place& place) { tailNode.Gui.GetOutputPort(place, tailPort); });
    const bool hasInput =
        HasPort(headNode, headNode.Gui.FindInputPort(headPort), where, problems,
                [&](const Place& place) { headNode.Gui.GetInputPort(place, headPort); });
    if (!hasOutput || !hasInput)
        return false;
    if (graph.FindEdge(head, headPort)) {
        problems.Fail("doubled-input", where,
                      Compose("input port \"", headPort, "\" of node \"", headNode.Id,
                              "\" has an edge already, so output port \"", tailPort,
                              "\" of node \"", tailNode.Id, "\" cannot feed it too"));
        return false;
    }
    return true;
}

void RefuseCircle(const GraphStore& graph, const std::vector<std::size_t>& circle,
                  const Place& where, ProblemList& problems)
{
    problems.Fail("edge-circle", where,
                  Compose("edges run in a circle: ", FormatCircle(graph, circle)));
}

void RefuseReferenceCircle(const GraphStore& graph, const std::vector<std::size_t>& circle,
                           ProblemList& problems)
{
    problems.Fail("reference-circle", graph.Nodes()[circle.front()].Where,
                  Compose("references run in a circle: ", FormatCircle(graph, circle)));
}

} // namespace Mox::Host
