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

/// An editable material: its document, and the authoring graph that shows it.
///
/// The document is the entire state; saving the material means writing the document. The graph
/// holds no information that is not in the document: a node is always the same as one that is
/// loaded from its record and then builds its ports. A record that the graph cannot show, such as
/// an edge whose port does not exist, stays in the document, and ReportProblems reports its
/// problem.
///
/// A change is applied completely or not at all, even if the construction of a node or its
/// UpdatePorts throws. It creates new objects for the nodes whose records change and for the nodes
/// that refer to them, so hosts must look up nodes by id instead of keeping the objects. Only
/// changes of the host's own values ("BindingIndex", "PositionX", "PositionY") keep the object.
/// Nodes and edges have the indices of their records, which stay the same as long as the records
/// exist. Values and ports of nodes can be read freely.
class MaterialGraph
{
public:
    using Node = GraphNode;
    using Edge = GraphEdge;

    /// Creates an empty material.
    explicit MaterialGraph(NodeMaker maker);

    /// @param maker the source of its nodes must outlive the graph
    MaterialGraph(MaterialDocument document, NodeMaker maker);

    const MaterialDocument& Document() const { return _document.Document(); }

    /// Reports all current problems of the document.
    void ReportProblems(ProblemList& problems) const { _view.Report(Document(), problems); }

    /// Applies the steps of a change one by one, and then checks the edges.
    ///
    /// A node whose property is set rebuilds its ports, and so do all nodes that refer to it, each
    /// after the nodes it refers to. The node's record stores the values that a node loaded from it
    /// would not derive by itself; the records of the other nodes are not modified. An edge whose
    /// port disappears as a result is removed.
    ///
    /// Removing a node removes its edges and clears the properties that refer to it. An edge at a
    /// placeholder is kept although it connects no ports, and the placeholder's port is assumed to
    /// exist.
    /// @returns the inverse; applied next, it restores the previous document
    /// @throws HostError naming nodes and ports if a step is not valid: a missing node, port or
    ///         edge, a duplicate id, a second edge into an input, a cycle of edges or references
    ///         (with its full path), a value that a property does not accept, or a node that cannot
    ///         be created or cannot build its ports. In that case, nothing changes. Problems that
    ///         existed before do not cause a failure. The error is a RefusedStep unless it only
    ///         arises from all steps together, as with edges.
    DocumentChange Apply(const GraphChange& change);

    /// Undoes the last change and restores the earlier problems.
    /// @param inverse as returned by Apply or Undo for that change
    /// @returns the inverse of the undo, which redoes the change
    DocumentChange Undo(DocumentChange inverse);

    /// Returns the record that a node would have if its references to some ids were cleared.
    DocumentNode WithoutReferences(std::size_t node, const std::vector<std::string>& ids) const;

    /// In document order; [] accepts an index.
    ShownItems<DocumentNode, Node> Nodes() const
    {
        return {Document().Nodes, _view.Nodes(), _view.NodeCount()};
    }
    ShownItems<DocumentEdge, Edge> Edges() const
    {
        return {Document().Edges, _view.Edges(), _view.EdgeCount()};
    }

    /// The edges at each node by index, including edges at placeholders.
    const LinkTable& Links() const { return _view.Links(); }

    /// An order in which the tail of each edge precedes its head.
    const OnlineOrder& Order() const { return _view.Order(); }

    /// Whether the document has a node with this id, shown or not.
    bool HasId(const std::string& id) const { return _document.FindNode(id).has_value(); }

    /// The index of a node.
    std::optional<std::size_t> FindNode(const std::string& id) const;

    /// @throws HostError if there is no such node
    std::size_t FindNode(const std::string& id, const Place& where) const;

    bool HasAnnotation(const std::string& id) const
    {
        return _document.FindAnnotation(id).has_value();
    }

    /// The index of an annotation.
    /// @throws HostError if it does not exist
    std::size_t FindAnnotation(const std::string& id) const
    {
        return _document.RequireAnnotation(id);
    }

    /// The id of a node object in this graph, or an empty string.
    std::string IdOf(const Materials::GuiNode* node) const;

    /// Whether the edge at an input connects no ports because one of its nodes is a placeholder.
    bool HasLooseEdge(std::size_t head, const std::string& headPort) const;

    /// Returns the nodes to be resolved again since the last call; some may no longer exist.
    std::vector<std::size_t> TakeTouched() { return _view.TakeTouched(); }

    /// The same nodes without clearing the list; empty if the graph is resolved.
    const std::vector<std::size_t>& Touched() const { return _view.Touched(); }

private:
    GraphView BuildView() const;
    DocumentChange Commit(DocumentEdit& edit, NodeStage& nodes, EdgeStage& edges) noexcept;
    DocumentChange CommitAnew(DocumentEdit& edit);

    NodeMaker _maker;
    IndexedDocument _document;
    GraphView _view;
};

/// A selection of nodes and annotations of a material, by id.
struct GraphParts
{
    std::vector<std::string> Nodes;
    std::vector<std::string> Annotations;

    bool IsEmpty() const { return Nodes.empty() && Annotations.empty(); }
};

} // namespace Mox::Host
