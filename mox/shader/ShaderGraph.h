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

/// The result of one translation: all shader nodes and edges, which it owns, and the table of
/// interface parameters, of which each (name, flags) key has one node.
///
/// The graph only grows. It knows nothing of ports and types; its lists keep the order of
/// insertion and its sets answer membership. Not synchronised. A failed operation leaves the graph
/// as it was.
class MOX_API ShaderGraph : private boost::noncopyable
{
public:
    using InterfaceKey = std::pair<std::string, std::int32_t>;

    /// An empty graph without providers; the host appends to Providers before it asks for keys.
    ShaderGraph();
    ~ShaderGraph();

    /// Adds a node; an interface parameter also takes its key.
    /// @throws ShaderError if the key is taken or the node is in the graph already
    void InsertNode(const ShaderNodeHandle& node);

    /// Makes an edge between two nodes of the graph and inserts it.
    /// @throws ShaderError as InsertEdge does
    void ConnectPorts(const ShaderNodeHandle& tail, const std::string& tailPort,
                      const ShaderNodeHandle& head, const std::string& headPort, bool flag);

    /// Adds an edge and enters it in the lists of its two nodes.
    /// @throws ShaderError if an end has gone or is not in the graph, if both ends are one node, or
    ///         if the edge is in the graph already
    void InsertEdge(const ShaderEdgeHandle& edge);

    /// Whether the graph itself holds the key. Providers are not asked.
    bool HasInterfaceNode(const std::string& name, std::int32_t flags) const;

    /// The node of a key. If the graph holds none, the providers are asked, the last one added
    /// first, and what they give is not stored.
    /// @throws ShaderError if nobody serves the key
    ShaderNodeHandle FindInterfaceNode(const std::string& name, std::int32_t flags);

    /// FindInterfaceNode for a node that must have a type.
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
