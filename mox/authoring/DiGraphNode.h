#pragma once

#include "mox/ShaderError.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <list>

/// Makes NodeType a node of a directed graph whose edges are of EdgeType.
///
/// An edge runs from its tail, whose output feeds it, to its head. The graph owns nodes and edges;
/// a node only knows its edges weakly, so whoever destroys an edge takes it out of both lists
/// first. Not synchronised.
template <class NodeType, class EdgeType>
class DiGraphNode : private boost::noncopyable
{
public:
    using EdgeHandle = boost::shared_ptr<EdgeType>;
    using EdgeList = std::list<boost::weak_ptr<EdgeType>>;

    /// Appends edge to InEdges.
    /// @throws ShaderError if this very edge is listed already; the list does not change
    /// @throws boost::bad_weak_ptr on meeting an entry whose edge has gone
    void AddInEdge(const EdgeHandle& edge)
    {
        RequireNewInEdge(edge);
        InEdges.emplace_back(edge);
    }

    /// Appends edge to OutEdges; failures as with AddInEdge.
    void AddOutEdge(const EdgeHandle& edge)
    {
        RequireNewOutEdge(edge);
        OutEdges.emplace_back(edge);
    }

    /// The checks of AddInEdge and AddOutEdge by themselves.
    void RequireNewInEdge(const EdgeHandle& edge) const
    {
        if (Contains(InEdges, edge))
            throw ShaderError("in-edge entry for addition already exists on node");
    }

    void RequireNewOutEdge(const EdgeHandle& edge) const
    {
        if (Contains(OutEdges, edge))
            throw ShaderError("out-edge entry for addition already exists on node");
    }

    EdgeList InEdges;  ///< edges whose head is this node, in order of addition
    EdgeList OutEdges; ///< edges whose tail is this node, in order of addition

private:
    static bool Contains(const EdgeList& edges, const EdgeHandle& wanted)
    {
        for (const auto& entry : edges) {
            if (EdgeHandle(entry) == wanted)
                return true;
        }
        return false;
    }
};
