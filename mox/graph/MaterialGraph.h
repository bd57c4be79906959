#pragma once

#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphChange.h"
#include "mox/graph/GraphView.h"
#include "mox/graph/NodeMaker.h"
#include "mox/graph/ShownItems.h"
#include "mox/host/Problem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

class EdgeStage;
class NodeStage;

/// A material that can be edited: its document, and the authoring graph that shows it.
///
/// The document is the whole state, and to save the material is to write it. The graph holds
/// nothing that the document does not say: a node is always as one that is loaded from its record
/// and builds its ports. A record that the graph cannot show, such as an edge whose port is not
/// there, stays in the document, and ReportProblems says what is wrong with it.
///
/// A change is done whole or not at all, whatever a node's construction or UpdatePorts raises. It
/// builds new objects for the nodes whose records change and for those that refer to them, so hosts
/// find nodes by their ids and do not keep the objects. Only the values of the host's own
/// ("BindingIndex", "PositionX", "PositionY") leave the object what it is. Nodes and edges have the
/// numbers of their records, which stay theirs as long as they are there. Values and ports of nodes
/// may be read freely.
class MaterialGraph
{
public:
    using Node = GraphNode;
    using Edge = GraphEdge;

    /// An empty material.
    /// @param file as it is named in messages
    explicit MaterialGraph(NodeMaker maker, std::string file = {});

    /// @param maker what it makes nodes from must outlive the graph
    MaterialGraph(MaterialDocument document, NodeMaker maker);

    const MaterialDocument& Document() const { return _document.Document(); }

    /// All that is wrong with the document now.
    void ReportProblems(ProblemList& problems) const { _view.Report(Document(), problems); }

    /// Does the steps of a change one after another, and then looks at the edges.
    ///
    /// A node whose property is set rebuilds its ports, and so do all nodes that refer to it, each
    /// after those that it refers to itself. The record of the node takes over what a node that is
    /// loaded from it would not settle to the same value by itself; the records of the others stay
    /// as they are. An edge whose port vanishes by that is removed.
    ///
    /// Removing a node removes its edges and empties the properties that refer to it. An edge at a
    /// placeholder is kept, though it joins nothing, and the placeholder's port is taken on trust.
    /// @returns the inverse: applied next, it brings the document back to what it was
    /// @throws HostError naming nodes and ports if a step does not fit: a missing node, port or
    ///         edge, an id that is taken, a second edge into an input, a circle of edges or
    ///         references with the whole way round, a value that a property does not take, a node
    ///         that cannot be made or cannot build its ports; nothing has changed then. What was
    ///         wrong before is no reason. It is a RefusedStep unless only all steps together do not
    ///         fit, as with edges.
    DocumentChange Apply(const GraphChange& change);

    /// Takes back what has been done last, and brings back what was wrong then.
    /// @param inverse what Apply or Undo has given for it
    /// @returns the inverse of this, which does it again
    DocumentChange Undo(DocumentChange inverse);

    /// The record that a node would have if its references to some ids were emptied.
    DocumentNode WithoutReferences(std::size_t node, const std::vector<std::string>& ids) const;

    /// In the order of the document; [] takes a number.
    ShownItems<DocumentNode, Node> Nodes() const
    {
        return {Document().Nodes, _view.Nodes(), _view.NodeCount()};
    }
    ShownItems<DocumentEdge, Edge> Edges() const
    {
        return {Document().Edges, _view.Edges(), _view.EdgeCount()};
    }

    /// The edges at each node by number, those at placeholders included.
    const LinkTable& Links() const { return _view.Links(); }

    /// An order in which the tail of each edge comes before its head.
    const OnlineOrder& Order() const { return _view.Order(); }

    /// Whether a node of the document has this id, be it shown or not.
    bool HasId(const std::string& id) const { return _document.FindNode(id).has_value(); }

    /// Number of a node.
    std::optional<std::size_t> FindNode(const std::string& id) const;

    /// @throws HostError if there is no such node
    std::size_t FindNode(const std::string& id, const Place& where) const;

    bool HasAnnotation(const std::string& id) const
    {
        return _document.FindAnnotation(id).has_value();
    }

    /// Number of an annotation.
    /// @throws HostError if there is none
    std::size_t FindAnnotation(const std::string& id) const
    {
        return _document.RequireAnnotation(id);
    }

    /// The id under which a node object stands here, or an empty text.
    std::string IdOf(const Materials::GuiNode* node) const;

    /// Whether the edge that leads to an input joins nothing, since a placeholder stands at it.
    bool HasLooseEdge(std::size_t head, const std::string& headPort) const;

    /// The nodes that must be resolved again since the last call; some may have gone.
    std::vector<std::size_t> TakeTouched() { return _view.TakeTouched(); }

    /// The same without taking them: empty if the graph is resolved.
    const std::vector<std::size_t>& Touched() const { return _view.Touched(); }

private:
    GraphView BuildView() const;
    DocumentChange Commit(DocumentEdit& edit, NodeStage& nodes, EdgeStage& edges) noexcept;
    DocumentChange CommitAnew(DocumentEdit& edit);

    NodeMaker _maker;
    IndexedDocument _document;
    GraphView _view;
};

/// Some nodes and annotations of a material, by id.
struct GraphParts
{
    std::vector<std::string> Nodes;
    std::vector<std::string> Annotations;

    bool IsEmpty() const { return Nodes.empty() && Annotations.empty(); }
};

} // namespace Mox::Host
