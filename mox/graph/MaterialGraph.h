#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/GraphChange.h"
#include "mox/graph/GraphStore.h"
#include "mox/graph/NodeMaker.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Mox::Host {

/// The authoring graph of one material: its nodes, the edges between them, and what the document
/// says about the material as a whole. It owns all of it, and keeps the edge lists and Connected
/// flags of the nodes right through every change.
///
/// Each change is done whole or not at all, whatever a node's construction or UpdatePorts raises,
/// and gives back the change that undoes it. Nodes and edges have indices that stay theirs as long
/// as they are there. Values and ports of nodes may be read freely but are changed here only.
class MaterialGraph
{
public:
    using Node = GraphNode;
    using Edge = GraphEdge;

    /// An empty graph.
    /// @param file as it is named in messages
    explicit MaterialGraph(NodeMaker maker, std::string file = {});

    explicit MaterialGraph(GraphStore graph) : _graph(std::move(graph)) {}

    /// Does the steps of a change one after another.
    ///
    /// A node whose property is set rebuilds its ports, and so do all nodes that refer to it, each
    /// after those that it refers to itself; only the properties that the host alone keeps
    /// ("BindingIndex", "PositionX", "PositionY") leave ports alone. An edge whose port vanishes by
    /// that is dropped; undoing the change brings it back to its old place.
    ///
    /// Removing a node drops its edges and empties the properties that refer to it. An edge at a
    /// placeholder is kept, though it joins nothing, and the placeholder's port is taken on trust.
    /// @returns the inverse: applied next, it leaves the graph as it was, in the same order, except
    ///          that indices may differ and nodes that were gone are new objects
    /// @throws HostError naming nodes and ports if a step does not fit: a missing node, port or
    ///         edge, an id that is taken, a second edge into an input, a circle of edges or
    ///         references with the whole way round, a value that a property does not take, a node
    ///         that cannot be made or cannot build its ports; nothing has changed then
    GraphChange Apply(const GraphChange& change);

    /// The single steps; each returns its inverse and raises what Apply raises.

    /// Adds a new node of a type, ahead of another one or at the end.
    GraphChange AddNode(const std::string& id, const std::string& type,
                        const std::string& before = {});
    GraphChange RemoveNode(const std::string& id);
    GraphChange RenameNode(const std::string& id, const std::string& newId);
    GraphChange Connect(const std::string& tail, const std::string& tailPort,
                        const std::string& head, const std::string& headPort);
    GraphChange Disconnect(const std::string& tail, const std::string& tailPort,
                           const std::string& head, const std::string& headPort);

    /// Gives a property the value that a text means for its kind.
    GraphChange SetProperty(const std::string& node, const std::string& property,
                            const std::string& value);

    /// In document order; [] takes an index, which may lie in gaps between 0 and IndexEnd().
    const OrderedSlots<GraphNode>& Nodes() const { return _graph.Nodes(); }
    const OrderedSlots<GraphEdge>& Edges() const { return _graph.Edges(); }

    /// The edges at each node, by index, those at placeholders included.
    const LinkTable& Links() const { return _graph.Links(); }

    /// Whether a placeholder stands at one of the edge's ends, so that it joins no ports.
    bool IsLoose(const Edge& edge) const { return _graph.IsLoose(edge); }

    /// Index of a node.
    /// @throws HostError if there is no such node
    std::size_t FindNode(const std::string& id, const Place& where) const;

    /// The parts behind all of this, to read.
    const GraphStore& Store() const { return _graph; }

    /// The nodes that must be resolved again since the last call; some may have gone.
    std::vector<std::size_t> TakeTouched() { return _graph.TakeTouched(); }

    std::vector<DocumentValue> Description; ///< what the material is, for people and catalogues
    std::vector<DocumentValue> RenderState; ///< blending, tests and culling
    std::vector<DocumentBinding> Bindings;  ///< the host's own values
    MaterialComments Comments;              ///< of the document

private:
    GraphStore _graph;
};

} // namespace Mox::Host
