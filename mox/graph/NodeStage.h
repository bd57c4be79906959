#pragma once

#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphOrder.h"
#include "mox/graph/GraphView.h"
#include "mox/graph/NodeBuilder.h"
#include "mox/graph/NodeMaker.h"
#include "mox/host/HostError.h"

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Mox::Host {

/// The new nodes of an update, built beside those of a view. Before Commit the nodes of the view
/// stay as they are.
class NodeStage
{
public:
    /// @param view, document and maker must outlive the stage
    NodeStage(GraphView& view, const IndexedDocument& document, const NodeMaker& maker);
    NodeStage(const NodeStage&) = delete;
    NodeStage& operator=(const NodeStage&) = delete;
    ~NodeStage();

    const NodeBuilder& Builder() const { return _builder; }

    /// A node as it is to be: the new one if there is one, else that of the view.
    const GraphNode& At(std::size_t index) const;

    /// The numbers of the new nodes, in the order of coming.
    const std::vector<std::size_t>& Staged() const { return _order; }

    /// Puts a new node in its place.
    void Put(std::size_t index, GraphNode node);

    /// Builds the nodes of records that have come, gone or changed, and those of all records that
    /// refer to them, each after those that it refers to itself.
    /// @returns the nodes of a circle of references, which prevents that, or none
    std::vector<std::size_t> Rebuild(const std::vector<std::size_t>& changed);

    /// Follows a record in which only what the host alone keeps has changed. The node stays the
    /// same object.
    void RereadHostValues(std::size_t index);

    /// Builds all nodes of the document. Where references run in circles, some are left out.
    void BuildAll();

    /// Nodes and all that refer to them by their records, directly or not, in the order of meeting.
    std::vector<std::size_t> WithReferrers(const std::vector<std::size_t>& nodes) const;

    /// What a node refers to: by its values, and by properties that only its record has.
    std::vector<std::size_t> TargetsOf(std::size_t index, const GraphNode& node,
                                       const DocumentNode& record) const;

    /// Orders some nodes so that each comes after those among them that it refers to.
    /// @param targets of each of the nodes
    GraphOrder Order(const std::vector<std::size_t>& nodes,
                     const std::vector<std::vector<std::size_t>>& targets) const;

    /// The error that links run in a cycle of nodes.
    /// @param links "edges" or "references"
    /// @param circle nodes, each of which leads to the next and the last one to the first
    HostError Circle(const char* links, const std::vector<std::size_t>& circle,
                     const Place& where) const;

    /// Reports the errors by which a new node is worse than the one that the view has.
    void ReportNewErrors(ProblemList& problems) const;

    /// Moves the new nodes into the view, which has reserved the room.
    void Commit() noexcept;

    /// Where references run in circles, as BuildAll found them.
    ProblemList ReferenceCircles;

private:
    std::vector<std::size_t> MakeAll(const std::vector<std::size_t>& nodes);
    GraphOrder OrderStaged(const std::vector<std::size_t>& nodes) const;
    void BreakReference(std::size_t referrer, std::size_t target);
    void BreakAllReferences(const std::vector<std::size_t>& nodes);

    GraphView& _view;
    const IndexedDocument& _document;
    NodeBuilder _builder;
    std::unordered_map<std::size_t, GraphNode> _staged;
    std::vector<PluginNode> _replaced; ///< new objects in whose place newer ones have come
    std::vector<std::size_t> _order;
    std::vector<std::pair<std::size_t, GraphNode>> _reread; ///< whose host values are to be copied
};

} // namespace Mox::Host
