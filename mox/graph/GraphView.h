#pragma once

#include "mox/authoring/GuiEdge.h"
#include "mox/document/MaterialDocument.h"
#include "mox/graph/GraphOrder.h"
#include "mox/host/PluginNode.h"
#include "mox/host/Problem.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Mox::Host {

/// The problems of a node, by the stage at which they occurred.
struct NodeProblems
{
    ProblemList Making;
    ProblemList Loading;  ///< loading the stored properties
    ProblemList Building; ///< building the ports; a node that fails here has no edges
};

/// A node of an authoring graph.
struct GraphNode
{
    std::string Id;
    PluginNode Gui;             ///< null if not even a placeholder can be created
    bool IsPlaceholder = false; ///< represents a type that no plug-in provides; it has no ports
    Place Where;
    NodeProblems Problems;

    std::vector<std::size_t> OutputUses; ///< number of edges at each output port

    bool IsShown() const { return static_cast<bool>(Gui); }
};

/// An edge of an authoring graph.
struct GraphEdge
{
    boost::shared_ptr<Materials::GuiEdge> Gui; ///< null if the graph cannot show the edge
    std::size_t Tail = 0;                      ///< index of the source node
    std::size_t Head = 0;                      ///< index of the target node
    bool IsLoose = false; ///< one of its nodes is a placeholder, so it connects no ports
    Place Where;
    ProblemList Problems;

    bool IsShown() const { return Gui != nullptr; }

private:
    friend class GraphView;

    PluginNode::EdgeList::iterator OutEntry; ///< in the tail's list, unless the edge is loose
    PluginNode::EdgeList::iterator InEntry;
};

/// Clears the references of a node that is removed, since a cycle of references would never be
/// released.
void EmptyReferences(const PluginNode& node) noexcept;

/// A pair of node indices; the first node refers to the second.
using NodeReference = std::pair<std::size_t, std::size_t>;

/// The nodes and edges for the records of a document, with the same indices as the records, and all
/// data derived from them: edge lists, Connected flags, topological order. It performs only the
/// requested operations; its callers determine which ones a document requires.
///
/// All operations that can fail are separate from those that modify the view and precede them, so
/// that the latter cannot fail.
class GraphView
{
public:
    GraphView() = default;
    GraphView(GraphView&& other) noexcept { Swap(other); }
    GraphView& operator=(GraphView other) noexcept
    {
        Swap(other);
        return *this;
    }

    ~GraphView();

    /// Also valid for indices without a record, for which they return empty items.
    const GraphNode& Node(std::size_t index) const;
    const GraphEdge& Edge(std::size_t index) const;

    const std::vector<GraphNode>& Nodes() const { return _nodes; } ///< by index
    const std::vector<GraphEdge>& Edges() const { return _edges; } ///< by index

    std::size_t NodeCount() const { return _nodeCount; } ///< shown nodes only
    std::size_t EdgeCount() const { return _edgeCount; } ///< shown edges only

    /// The shown edges.
    const LinkTable& Links() const { return _links; }
    LinkTable& Links() { return _links; }

    /// An order in which the tail of each edge precedes its head; references are not considered.
    const OnlineOrder& Order() const { return _order; }
    OnlineOrder& Order() { return _order; }

    /// The index of a node object.
    std::optional<std::size_t> Find(const Materials::GuiNode* node) const;

    /// References that are omitted because they are part of a cycle.
    const std::set<NodeReference>& BrokenReferences() const { return _brokenReferences; }

    /// Whether there are cycles of edges or references, so that some of them are omitted.
    bool HasCircles() const;

    /// Reports the problems of the document, in the order of its records.
    void Report(const MaterialDocument& document, ProblemList& problems) const;

    /// Allocates memory for records with indices below these limits.
    void Reserve(std::size_t nodeEnd, std::size_t edgeEnd);

    /// Register a new node object for an index that it will soon occupy, and unregister one.
    void Enter(const PluginNode& node, std::size_t index);
    void Leave(const PluginNode& node) noexcept;

    /// Stores the cycles that BuildAll found.
    void SetCircles(std::set<NodeReference> brokenReferences, ProblemList references,
                    ProblemList edges) noexcept;

    /// Replaces a node, or removes it, in which case it must not have edges. The new object
    /// inherits the edges of the old one.
    void Replace(std::size_t index, GraphNode&& node) noexcept;

    /// Copies the host's own values and the loading problems from another node; the object of the
    /// node stays the same.
    void TakeHostValues(std::size_t index, GraphNode&& source) noexcept;

    /// An edge with its entries for the lists of its nodes.
    struct NewEdge
    {
        explicit NewEdge(GraphEdge edge);

        GraphEdge Edge;
        PluginNode::EdgeList Out;
        PluginNode::EdgeList In;
    };

    /// Show and hide an edge in the lists and flags of its nodes; the caller must update Links.
    void Show(std::size_t index, NewEdge&& edge) noexcept;
    void Hide(std::size_t index) noexcept;

    /// Stores the source location of an edge and its problems.
    void Note(std::size_t edge, Place&& where, ProblemList&& problems) noexcept;

    /// Marks a node to be resolved again.
    void Touch(std::size_t node) noexcept;

    /// Returns the nodes that have been touched since the last call; some may no longer exist.
    std::vector<std::size_t> TakeTouched();

    const std::vector<std::size_t>& Touched() const { return _touched; }

private:
    void Swap(GraphView& other) noexcept;
    void JoinPorts(std::size_t index) noexcept;
    void ConnectInput(const GraphEdge& edge, bool isConnected) noexcept;
    void CountOutputUse(const GraphEdge& edge, bool isUsed) noexcept;

    std::vector<GraphNode> _nodes;
    std::vector<GraphEdge> _edges;
    std::size_t _nodeCount = 0;
    std::size_t _edgeCount = 0;
    LinkTable _links;
    OnlineOrder _order;
    std::unordered_map<const Materials::GuiNode*, std::size_t> _numbers;
    std::set<NodeReference> _brokenReferences;
    ProblemList _referenceCircles;
    ProblemList _edgeCircles;
    std::vector<std::size_t> _touched; ///< without duplicates, with capacity for all nodes
    std::vector<bool> _isTouched;      ///< by node
};

} // namespace Mox::Host
