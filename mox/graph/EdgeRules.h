#pragma once

#include "mox/graph/NodeStage.h"
#include "mox/host/Problem.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Mox::Host {

/// Whether an edge fits between two nodes that are shown: both ports are there, the input is free,
/// and the nodes are not one. Ports of a placeholder are taken on trust. What does not fit is
/// reported. Circles are left to others.
/// @param isFed whether another edge feeds the input already
bool CheckEdge(const GraphNode& tail, const GraphNode& head, const DocumentEdge& edge, bool isFed,
               const Place& where, ProblemList& problems);

/// Reports that edges run in a circle.
/// @param circle nodes, each of which feeds the next and the last one the first
void ReportEdgeCircle(const NodeStage& nodes, const std::vector<std::size_t>& circle,
                      const Place& where, ProblemList& problems);

/// Reports that references run in a circle.
/// @param circle nodes, each of which refers to the next and the last one to the first
void ReportReferenceCircle(const NodeStage& nodes, const std::vector<std::size_t>& circle,
                           ProblemList& problems);

} // namespace Mox::Host
