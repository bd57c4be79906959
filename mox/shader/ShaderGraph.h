#pragma once

#include "mox/Export.h"
#include "mox/shader/InterfaceNodeProvider.h"
#include "mox/shader/ShaderNode.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>
#include <map>
#include <set>
#include <string>
#include <utility>

/// The result of translating a material: all shader nodes and edges, which the graph owns, and the
/// table of interface parameters, with one node for each (name, flags) key.
///
/// Nodes and edges can only be added. The graph does not check ports and types; its lists are in
/// insertion order and its sets are for lookup. Not thread-safe. An operation that fails leaves the
/// graph unchanged.
class MOX_API ShaderGraph : private boost::noncopyable
{
public:
    using InterfaceKey = std::pair<std::string, std::int32_t>;

    /// Makes an empty graph without providers; the host adds Providers before it looks up keys.
    ShaderGraph();
    ~ShaderGraph();

    /// Adds a node and, if it is an interface parameter, its key.
    /// @throws ShaderError if the key is taken or the node is already in the graph
    void InsertNode(const ShaderNodeHandle& node);

    /// Makes and inserts an edge between two nodes of the graph.
    /// @throws ShaderError as InsertEdge does
    void ConnectPorts(const ShaderNodeHandle& tail, const std::string& tailPort,
                      const ShaderNodeHandle& head, const std::string& headPort, bool flag);

    /// Adds an edge, also to the lists of its two nodes.
    /// @throws ShaderError if a node has been destroyed or is not in the graph, if both ends are
    ///        the same node, or if the edge is already in the graph
    void InsertEdge(const ShaderEdgeHandle& edge);

    /// Whether the graph itself contains the key; providers are not queried.
    bool HasInterfaceNode(const std::string& name, std::int32_t flags) const;

    /// Returns the node with a key. If the graph contains none, the providers are queried, last
    /// added first; their result is not stored.
    /// @throws ShaderError if there is no such node
    ShaderNodeHandle FindInterfaceNode(const std::string& name, std::int32_t flags);

    /// Like FindInterfaceNode, for a node that must have the given type.
    /// @throws ShaderError if the type differs in any field
    ShaderNodeHandle GetInterfaceNode(const std::string& name, std::int32_t flags,
                                      const ShaderType& expected);

    std::list<ShaderNodeHandle> Nodes;
    std::list<ShaderEdgeHandle> Edges;
    std::set<ShaderNodeHandle> NodeSet;
    std::set<ShaderEdgeHandle> EdgeSet;
    std::map<InterfaceKey, ShaderNodeHandle> InterfaceNodes;
    std::list<boost::shared_ptr<InterfaceNodeProvider>> Providers;
};
