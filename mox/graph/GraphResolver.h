#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Mox::Host {

/// Resolves the component counts of nodes, from sources to sinks, and then the precisions, from
/// sinks to sources. Conflicting counts are not an error: the ports indicate them as CountConflict,
/// and ReportCountConflicts reports them.
///
/// The first run resolves the entire graph, later runs only the parts affected by changes since
/// then: a node is called again if it was changed, if one of its edges was added or removed, or if
/// a neighbour passes a different value to it than before. The result is the same as that of
/// resolving the entire graph. The graph must not be moved, and must have only one resolver.
class GraphResolver
{
public:
    explicit GraphResolver(MaterialGraph& graph) : _graph(graph) {}

    /// Updates the graph. A node that fails is reported, and its free ports stay unknown; the other
    /// nodes are still resolved.
    /// @returns the indices of the nodes that were called, which must be checked again, in
    ///          unspecified order
    std::vector<std::size_t> Resolve(ProblemList& problems);

private:
    /// The values that an edge passed last.
    struct Carried
    {
        std::int32_t Count = 0; ///< 0: unknown
        bool IsFloat = false;
    };

    class Agenda;

    void ResolveCounts(std::size_t node, Agenda& agenda, ProblemList& problems);
    void ResolvePrecisions(std::size_t node, Agenda& agenda, ProblemList& problems);

    MaterialGraph& _graph;
    std::vector<Carried> _carried; ///< by edge
    bool _hasRun = false;
};

/// Resolves an entire graph once.
void ResolveGraph(MaterialGraph& graph, ProblemList& problems);

/// Reports conflicting counts at the inputs of a node.
void ReportCountConflict(const MaterialGraph::Node& node, ProblemList& problems);

/// Reports the count conflicts of all nodes.
void ReportCountConflicts(const MaterialGraph& graph, ProblemList& problems);

} // namespace Mox::Host
