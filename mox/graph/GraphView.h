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

/// What is wrong with a node, by the step at which it showed.
struct NodeProblems
{
    ProblemList Making;
    ProblemList Loading;  ///< of the stored properties
    ProblemList Building; ///< of the ports; a node that refuses to build them has no edges
};

/// A node of an authoring graph.
struct GraphNode
{
    std::string Id;
    PluginNode Gui;             ///< none if not even a placeholder can be made
    bool IsPlaceholder = false; ///< stands for a type that no plug-in offers; it has no ports
    Place Where;
    NodeProblems Problems;

    std::vector<std::size_t> OutputUses; ///< number of edges at each output port

    bool IsShown() const { return static_cast<bool>(Gui); }
};

/// An edge of an authoring graph.
struct GraphEdge
{
    boost::shared_ptr<Materials::GuiEdge> Gui; ///< none if the graph cannot show the edge
    std::size_t Tail = 0;                      ///< number of the node that it leaves
    std::size_t Head = 0;                      ///< number of the node that it arrives at
    bool IsLoose = false; ///< a placeholder stands at one of its ends, so that it joins no ports
    Place Where;
    ProblemList Problems;

    bool IsShown() const { return Gui != nullptr; }

private:
    friend class GraphView;

    PluginNode::EdgeList::iterator OutEntry; ///< in the list of the tail, unless it is loose
    PluginNode::EdgeList::iterator InEntry;
};

/// Empties the references of a node that goes, since a cycle of them would never be released.
void EmptyReferences(const PluginNode& node) noexcept;

/// A pair of nodes by number, the first of which refers to the second.
using NodeReference = std::pair<std::size_t, std::size_t>;

/// The nodes and edges that stand for the records of a document, under the numbers of the records,
/// and all that must agree with them: edge lists, Connected flags, topological order. It does what
/// it is told; GraphUpdate knows what a document asks for.
///
/// Whatever may fail happens before the operations that change the view, so that none of these
/// does.
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

    /// Also for numbers without a record, for which they are empty.
    const GraphNode& Node(std::size_t index) const;
    const GraphEdge& Edge(std::size_t index) const;

    const std::vector<GraphNode>& Nodes() const { return _nodes; } ///< by number
    const std::vector<GraphEdge>& Edges() const { return _edges; } ///< by number

    std::size_t NodeCount() const { return _nodeCount; } ///< of those that are shown
    std::size_t EdgeCount() const { return _edgeCount; } ///< of those that are shown

    /// The edges that are shown.
    const LinkTable& Links() const { return _links; }
    LinkTable& Links() { return _links; }

    /// An order in which the tail of each edge comes before its head; references have no say.
    const OnlineOrder& Order() const { return _order; }
    OnlineOrder& Order() { return _order; }

    /// The number of a node object.
    std::optional<std::size_t> Find(const Materials::GuiNode* node) const;

    /// References that are left out because they run in a circle with others.
    const std::set<NodeReference>& BrokenReferences() const { return _brokenReferences; }

    /// Whether edges or references run in circles, so that some of them are left out.
    bool HasCircles() const;

    /// What is wrong with the document, in the order of its records.
    void Report(const MaterialDocument& document, ProblemList& problems) const;

    /// Makes the room for records with numbers below these.
    void Reserve(std::size_t nodeEnd, std::size_t edgeEnd);

    /// Enters a new node object, which is to stand under a number soon, and removes one.
    void Enter(const PluginNode& node, std::size_t index);
    void Leave(const PluginNode& node) noexcept;

    /// Keeps what BuildAll found about circles.
    void SetCircles(std::set<NodeReference> brokenReferences, ProblemList references,
                    ProblemList edges) noexcept;

    /// Replaces a node, or removes it, in which case it has no edges. The new object takes over the
    /// edges of the old one.
    void Replace(std::size_t index, GraphNode&& node) noexcept;

    /// Gives a node that stays the same object the host's own values of another one, and its
    /// problems of loading.
    void TakeHostValues(std::size_t index, GraphNode&& source) noexcept;

    /// An edge with the entries for the lists of its nodes.
    struct NewEdge
    {
        explicit NewEdge(GraphEdge edge);

        GraphEdge Edge;
        PluginNode::EdgeList Out;
        PluginNode::EdgeList In;
    };

    /// Show and hide an edge in the lists and flags of its nodes; Links is left to the caller.
    void Show(std::size_t index, NewEdge&& edge) noexcept;
    void Hide(std::size_t index) noexcept;

    /// Keeps the place of an edge and what is wrong with it.
    void Note(std::size_t edge, Place&& where, ProblemList&& problems) noexcept;

    /// Notes that a node is to be resolved again.
    void Touch(std::size_t node) noexcept;

    /// The nodes that have been touched since the last call; some may have gone.
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
    std::vector<std::size_t> _touched; ///< each once, with room for all
    std::vector<bool> _isTouched;      ///< by node
};

} // namespace Mox::Host
