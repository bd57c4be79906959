#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Mox::Host {

/// Settles the component counts of nodes, from sources to sinks, and then the precisions, from
/// sinks to sources. Counts that do not agree are no failure: the ports show it as CountConflict,
/// and ReportCountConflicts tells it.
///
/// The first run settles the whole graph, later ones only what changes since then can reach: a node
/// is called again if it was changed, if an edge at it came or went, or if a neighbour hands it
/// another value than before. The result is the same as if all were settled anew. The graph must
/// not be moved, and only one resolver follows it.
class GraphResolver
{
public:
    explicit GraphResolver(MaterialGraph& graph) : _graph(graph) {}

    /// Brings the graph up to date. A node that fails is reported and leaves its free ports
    /// unknown; the others go on.
    /// @returns the nodes that were called, by index, in no particular order: what has to be
    ///          checked again
    std::vector<std::size_t> Resolve(ProblemList& problems);

private:
    /// What an edge carried last.
    struct Carried
    {
        std::int32_t Count = 0; ///< 0: not known
        bool IsFloat = false;
    };

    class Agenda;

    void ResolveCounts(std::size_t node, Agenda& agenda, ProblemList& problems);
    void ResolvePrecisions(std::size_t node, Agenda& agenda, ProblemList& problems);

    MaterialGraph& _graph;
    std::vector<Carried> _carried; ///< by edge
    bool _hasRun = false;
};

/// Settles a whole graph once.
void ResolveGraph(MaterialGraph& graph, ProblemList& problems);

/// Reports the counts at the inputs of a node that do not agree.
void ReportCountConflict(const MaterialGraph::Node& node, ProblemList& problems);

/// The same for all nodes.
void ReportCountConflicts(const MaterialGraph& graph, ProblemList& problems);

} // namespace Mox::Host
