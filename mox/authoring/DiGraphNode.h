#pragma once

#include "mox/ShaderError.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <list>

/// Makes NodeType a node of a directed graph with edges of type EdgeType.
///
/// An edge leads from its tail, whose output is its value, to its head. The graph owns nodes and
/// edges; a node only has weak references to its edges, so an edge must be removed from both lists
/// before it is destroyed. Not thread-safe.
template <class NodeType, class EdgeType>
class DiGraphNode : private boost::noncopyable
{
public:
    using EdgeHandle = boost::shared_ptr<EdgeType>;
    using EdgeList = std::list<boost::weak_ptr<EdgeType>>;

    /// Appends edge to InEdges.
    /// @throws ShaderError if the edge is already listed; the list does not change
    /// @throws boost::bad_weak_ptr if it encounters an entry whose edge has been destroyed
    void AddInEdge(const EdgeHandle& edge)
    {
        RequireNewInEdge(edge);
        InEdges.emplace_back(edge);
    }

    /// Appends edge to OutEdges; fails in the same cases as AddInEdge.
    void AddOutEdge(const EdgeHandle& edge)
    {
        RequireNewOutEdge(edge);
        OutEdges.emplace_back(edge);
    }

    /// Perform only the checks of AddInEdge and AddOutEdge.
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

namespace Mox::Materials {

using ::DiGraphNode; // also available in the namespace of the classes derived from it

} // namespace Mox::Materials
