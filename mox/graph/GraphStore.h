#pragma once

#include "mox/authoring/GuiEdge.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/LinkTable.h"
#include "mox/graph/NodeMaker.h"
#include "mox/graph/NodeReferences.h"
#include "mox/graph/OnlineOrder.h"
#include "mox/graph/OrderedSlots.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

class GraphStore;

/// A node of an authoring graph.
struct GraphNode
{
    std::string Id;
    PluginNode Gui;
    bool IsPlaceholder = false; ///< stands for a type that no plug-in offers; it has no ports
    bool HasRefusedPorts =
        false; ///< its class could not build the ports that its properties ask for
    Place Where;
    DocumentNode Stored; ///< as the document has it; what only the document knows is kept here

private:
    friend class GraphStore;

    std::vector<std::size_t> OutputUses; ///< number of edges at each output port
    std::unordered_map<std::string, std::size_t>::node_type IdEntry; ///< while detached
};

/// An input of a node, by the node's index. One edge at most feeds it, so it names that edge too.
struct GraphInput
{
    std::size_t Head;
    std::string Port;

    bool operator==(const GraphInput& other) const = default;
};

struct GraphInputHash
{
    std::size_t operator()(const GraphInput& input) const
    {
        return std::hash<std::string>()(input.Port) * 31 + input.Head;
    }
};

/// An edge of an authoring graph.
struct GraphEdge
{
    boost::shared_ptr<Materials::GuiEdge> Gui;
    std::size_t Tail = 0; ///< index of the node that it leaves
    std::size_t Head = 0; ///< index of the node that it arrives at
    Place Where;
    DocumentComments Comments; ///< in front of it in the document

private:
    friend class GraphStore;

    using Entries = PluginNode::EdgeList;

    bool IsLoose = false; ///< kept here, since looking at both nodes is dear in a large graph

    /// Its entries in lists and maps while the edge is in none, so that it goes in without fail.
    Entries SpareOut;
    Entries SpareIn;
    Entries::iterator OutEntry;
    Entries::iterator InEntry;
    std::unordered_map<GraphInput, std::size_t, GraphInputHash>::node_type InputEntry;
};

/// Nodes and edges of an authoring graph, and all that must agree with them: ids, edge lists,
/// Connected flags, topological order, references. It does what it is told; whether a graph should
/// have it so is for others to check.
///
/// Nodes and edges are made detached and unmade detached; attaching again what was attached before
/// does not fail, so every change can be taken back.
class GraphStore
{
public:
    static constexpr std::size_t None = OrderedSlots<GraphNode>::None;

    GraphStore(NodeMaker maker, std::string file);
    GraphStore(GraphStore&&) = default;
    GraphStore& operator=(GraphStore&&) = delete;

    /// Empties the references between nodes first, since a circle of them would never be released.
    ~GraphStore();

    const OrderedSlots<GraphNode>& Nodes() const { return _nodes; }
    const OrderedSlots<GraphEdge>& Edges() const { return _edges; }
    const LinkTable& Links() const { return _links; } ///< the edges by index
    const NodeReferences& References() const { return _references; }
    const NodeMaker& Maker() const { return _maker; }
    const std::string& File() const { return _file; }

    /// An order in which every edge's tail comes before its head, and references have no say.
    OnlineOrder& Order() { return _order; }
    const OnlineOrder& Order() const { return _order; }

    /// Makes room for so many nodes and edges in all, so that they come quicker.
    void Reserve(std::size_t nodes, std::size_t edges);

    std::optional<std::size_t> FindNode(const std::string& id) const;

    /// The id under which a node object stands here, or an empty text.
    std::string IdOf(const Materials::GuiNode* gui) const;

    /// The edge that feeds an input.
    std::optional<std::size_t> FindEdge(std::size_t head, const std::string& headPort) const;

    DocumentEdge Describe(const GraphEdge& edge) const;

    /// A property as documents have it.
    DocumentProperty Describe(const Materials::GuiProperty& property) const;

    /// Whether a placeholder stands at one of the edge's ends, so that it joins no ports.
    bool IsLoose(const GraphEdge& edge) const { return edge.IsLoose; }

    /// Whether the edge that leads to an input is loose.
    bool HasLooseEdge(std::size_t head, const std::string& headPort) const;

    std::size_t CreateNode(GraphNode&& node);
    void AttachNode(std::size_t index, std::size_t before);
    void DetachNode(std::size_t index) noexcept; ///< the node has no edges any more
    void ReleaseNode(std::size_t index) noexcept;

    void RenameNode(std::size_t index, const std::string& newId);

    void SetStoredProperties(std::size_t node, std::vector<DocumentProperty> properties);

    /// Replaces the value of a stored property that the node's bag does not have.
    void SetStoredValue(std::size_t node, std::size_t property, const std::string& value);

    /// Notes whether the node has refused to build its ports.
    void SetRefusedPorts(std::size_t node, bool hasRefused) noexcept;

    /// Reads anew what a node refers to.
    void RefreshReferences(std::size_t index);

    /// Replaces what RefreshReferences has read.
    void SetReferences(std::size_t index, const std::vector<std::size_t>& targets);

    /// Sets the Connected flags of a node's ports by its edges.
    /// @returns the edges whose port the node does not have
    std::vector<std::size_t> JoinPorts(std::size_t index);

    std::size_t CreateEdge(std::size_t tail, const std::string& tailPort, std::size_t head,
                           const std::string& headPort, Place where, DocumentComments comments);
    void AttachEdge(std::size_t index, std::size_t before);
    void DetachEdge(std::size_t index) noexcept;
    void ReleaseEdge(std::size_t index) noexcept;

    /// Notes that a node is to be resolved again.
    void Touch(std::size_t node) noexcept;

    /// The nodes that have been touched since the last call; some may have gone.
    std::vector<std::size_t> TakeTouched();

private:
    void CountUse(GraphEdge& edge, bool isUsed) noexcept;

    NodeMaker _maker;
    std::string _file;
    OrderedSlots<GraphNode> _nodes;
    OrderedSlots<GraphEdge> _edges;
    LinkTable _links;
    OnlineOrder _order;
    NodeReferences _references;
    std::unordered_map<std::string, std::size_t> _index;
    std::unordered_map<const Materials::GuiNode*, std::size_t> _byGui;
    std::unordered_map<GraphInput, std::size_t, GraphInputHash> _edgeOfInput;
    std::unordered_map<std::string, std::size_t> _newId; ///< where entries are made; empty
    std::unordered_map<GraphInput, std::size_t, GraphInputHash> _newInput; ///< likewise
    std::vector<std::size_t> _touched; ///< each once, with room for all
    std::vector<bool> _isTouched;      ///< by node
};

} // namespace Mox::Host
