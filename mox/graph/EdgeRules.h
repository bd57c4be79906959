#pragma once

#include "mox/graph/GraphStore.h"
#include "mox/host/Problem.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Whether an edge fits between two nodes: both ports are there, the input is free, and the nodes
/// are not one. Ports of a placeholder are taken on trust. Circles are left to RefuseCircle.
bool CheckEdge(const GraphStore& graph, std::size_t tail, const std::string& tailPort,
               std::size_t head, const std::string& headPort, const Place& where,
               ProblemList& problems);

/// Reports that edges run in a circle.
/// @param circle nodes, each feeding the next and the last one the first
void RefuseCircle(const GraphStore& graph, const std::vector<std::size_t>& circle,
                  const Place& where, ProblemList& problems);

/// Reports that references run in a circle.
/// @param circle nodes, each referring to the next and the last one to the first
void RefuseReferenceCircle(const GraphStore& graph, const std::vector<std::size_t>& circle,
                           ProblemList& problems);

} // namespace Mox::Host
