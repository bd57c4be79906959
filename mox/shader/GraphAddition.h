#pragma once

#include "mox/shader/ShaderGraph.h"

#include <list>
#include <map>
#include <set>

/// Adds nodes and edges to a shader graph, all of them or none.
///
/// Adding them here performs all checks and allocations. Commit moves them to the graph, which
/// cannot fail, so the graph's containers and the nodes' edge lists are always consistent. After a
/// failure, the addition cannot be used any more.
class GraphAddition
{
public:
    explicit GraphAddition(ShaderGraph& graph) : _graph(graph) {}

    /// @throws ShaderError as ShaderGraph::InsertNode does
    void AddNode(const ShaderNodeHandle& node);

    /// Adds an edge between nodes of the graph or of this addition.
    /// @throws ShaderError as ShaderGraph::InsertEdge does
    void AddEdge(const ShaderEdgeHandle& edge);

    void Commit() noexcept;

private:
    bool HasNode(const ShaderNodeHandle& node) const;

    ShaderGraph& _graph;
    std::list<ShaderNodeHandle> _nodes;
    std::set<ShaderNodeHandle> _nodeSet;
    std::map<ShaderGraph::InterfaceKey, ShaderNodeHandle> _interfaceNodes;
    std::list<ShaderEdgeHandle> _edges;
    std::set<ShaderEdgeHandle> _edgeSet;
    ShaderNode::EdgeList _outEntries; ///< for the tails, in the order of _edges
    ShaderNode::EdgeList _inEntries;  ///< for the heads, in the order of _edges
};
