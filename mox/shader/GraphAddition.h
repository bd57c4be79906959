#pragma once

#include "mox/shader/ShaderGraph.h"

#include <list>
#include <map>
#include <set>

/// Nodes and edges that a shader graph takes all at once or not at all.
///
/// Adding them here makes every check and every container entry. Commit moves the entries over,
/// which cannot fail, so list, set and table of the graph and the lists of the nodes always agree.
/// An addition that has failed is of no use any more.
class GraphAddition
{
public:
    explicit GraphAddition(ShaderGraph& graph) : _graph(graph) {}

    /// @throws ShaderError as ShaderGraph::InsertNode does
    void AddNode(const ShaderNodeHandle& node);

    /// An edge between nodes of the graph or of this addition.
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
