#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/host/HostError.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// The authoring graph of one material: its nodes and the edges between them. It owns both and
/// keeps the edge lists and Connected flags of the nodes right.
class MaterialGraph
{
public:
    struct Node
    {
        std::string Id;
        boost::shared_ptr<Materials::GuiNode> Gui;
        bool IsPlaceholder; ///< stands for a type that no plug-in offers; it has no ports
        Place Where;
    };

    struct Edge
    {
        boost::shared_ptr<Materials::GuiEdge> Gui;
        std::size_t Tail; ///< index into Nodes()
        std::size_t Head; ///< index into Nodes()
        Place Where;
    };

    /// Whether a placeholder stands at one of the edge's ends, so that it joins no ports.
    bool IsLoose(const Edge& edge) const;

    MaterialGraph() = default;
    MaterialGraph(MaterialGraph&&) = default;
    MaterialGraph& operator=(MaterialGraph&&) = default;

    /// Empties the references between nodes first, since a circle of them would never be released.
    ~MaterialGraph();

    /// Adds a node under an id.
    /// @throws HostError if the id is taken
    void AddNode(const std::string& id, const boost::shared_ptr<Materials::GuiNode>& node,
                 bool isPlaceholder, const Place& where);

    /// Lays an edge, enters it in both nodes' lists and sets the Connected flags of its ports. An
    /// edge that ends at a placeholder is kept but joins nothing.
    /// @throws HostError if a node or port does not exist, if both ends are one node, or if the
    ///         input has an edge already; nothing changes then
    void Connect(const std::string& tail, const std::string& tailPort, const std::string& head,
                 const std::string& headPort, const Place& where);

    /// In order of addition.
    const std::vector<Node>& Nodes() const { return _nodes; }
    const std::vector<Edge>& Edges() const { return _edges; }

    /// Position of a node in Nodes().
    /// @throws HostError if there is no such node
    std::size_t FindNode(const std::string& id, const Place& where) const;

private:
    std::vector<Node> _nodes;
    std::vector<Edge> _edges;
    std::unordered_map<std::string, std::size_t> _index;
};

} // namespace Mox::Host
