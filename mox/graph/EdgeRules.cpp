#include "mox/graph/EdgeRules.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

namespace Mox::Host {

using Materials::Compose;

namespace {

/// "a" -> "b" -> "a"
std::string FormatCircle(const NodeStage& nodes, const std::vector<std::size_t>& circle)
{
    std::string path;
    for (const std::size_t node : circle)
        path += Compose("\"", nodes.At(node).Id, "\" -> ");
    return Compose(path, "\"", nodes.At(circle.front()).Id, "\"");
}

/// Reports the failure of looking a port up that has not been found.
template <class LookUp>
bool HasPort(const GraphNode& node, std::int32_t found, ProblemList& problems, LookUp lookUp)
{
    if (node.IsPlaceholder || found >= 0)
        return true;
    try {
        lookUp();
        return true;
    } catch (const HostError& error) {
        problems.Fail("unknown-port", error);
        return false;
    }
}

} // namespace

bool CheckEdge(const GraphNode& tail, const GraphNode& head, const DocumentEdge& edge, bool isFed,
               const Place& where, ProblemList& problems)
{
    if (edge.Tail == edge.Head) {
        problems.Fail("self-edge", where, Compose("node \"", edge.Tail, "\" cannot feed itself"));
        return false;
    }
    const bool hasOutput = HasPort(tail, tail.Gui.FindOutputPort(edge.TailPort), problems, [&] {
        tail.Gui.GetOutputPort({where.File, where.Line, tail.Id}, edge.TailPort);
    });
    const bool hasInput = HasPort(head, head.Gui.FindInputPort(edge.HeadPort), problems, [&] {
        head.Gui.GetInputPort({where.File, where.Line, head.Id}, edge.HeadPort);
    });
    if (!hasOutput || !hasInput)
        return false;
    if (isFed) {
        problems.Fail("doubled-input", where,
                      Compose("input port \"", edge.HeadPort, "\" of node \"", edge.Head,
                              "\" has an edge already, so output port \"", edge.TailPort,
                              "\" of node \"", edge.Tail, "\" cannot feed it too"));
        return false;
    }
    return true;
}

void ReportEdgeCircle(const NodeStage& nodes, const std::vector<std::size_t>& circle,
                      const Place& where, ProblemList& problems)
{
    problems.Fail("edge-circle", where,
                  Compose("edges run in a circle: ", FormatCircle(nodes, circle)));
}

void ReportReferenceCircle(const NodeStage& nodes, const std::vector<std::size_t>& circle,
                           ProblemList& problems)
{
    problems.Fail("reference-circle", nodes.At(circle.front()).Where,
                  Compose("references run in a circle: ", FormatCircle(nodes, circle)));
}

} // namespace Mox::Host
