#pragma once

#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphOrder.h"
#include "mox/graph/GraphView.h"
#include "mox/graph/NodeBuilder.h"
#include "mox/graph/NodeMaker.h"
#include "mox/host/HostError.h"

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Mox::Host {

/// The new nodes of an update, built separately from the view. Nodes of the view are not modified
/// before Commit.
class NodeStage
{
public:
    /// @param view, document and maker must outlive the stage
    NodeStage(GraphView& view, const IndexedDocument& document, const NodeMaker& maker);
    NodeStage(const NodeStage&) = delete;
    NodeStage& operator=(const NodeStage&) = delete;
    ~NodeStage();

    const NodeBuilder& Builder() const { return _builder; }

    /// Returns the new node at an index if there is one, otherwise the view's node.
    const GraphNode& At(std::size_t index) const;

    /// The indices of the new nodes, in the order in which they were added.
    const std::vector<std::size_t>& Staged() const { return _order; }

    /// Adds a new node at an index.
    void Put(std::size_t index, GraphNode node);

    /// Builds the nodes of records that were added, removed or changed, and of all records that
    /// refer to them, each after the nodes it refers to.
    /// @returns the nodes of a cycle of references, which prevents this; empty on success
    std::vector<std::size_t> Rebuild(const std::vector<std::size_t>& changed);

    /// Updates the host's own values of a node after a record change that affects nothing else. The
    /// node keeps its object.
    void RereadHostValues(std::size_t index);

    /// Builds all nodes of the document. If references form cycles, some of them are omitted.
    void BuildAll();

    /// Returns nodes and all nodes whose records refer to them, directly or indirectly, in the
    /// order in which they are found.
    std::vector<std::size_t> WithReferrers(const std::vector<std::size_t>& nodes) const;

    /// Returns the nodes that a node refers to, by its values and by properties that only its
    /// record has.
    std::vector<std::size_t> TargetsOf(std::size_t index, const GraphNode& node,
                                       const DocumentNode& record) const;

    /// Orders nodes so that each follows those among them that it refers to.
    /// @param targets of each of the nodes
    GraphOrder Order(const std::vector<std::size_t>& nodes,
                     const std::vector<std::vector<std::size_t>>& targets) const;

    /// Creates the error for a cycle of nodes.
    /// @param links "edges" or "references"
    /// @param circle nodes, each linked to the next and the last one to the first
    HostError Circle(const char* links, const std::vector<std::size_t>& circle,
                     const Place& where) const;

    /// Reports the errors of new nodes that the replaced nodes did not have.
    void ReportNewErrors(ProblemList& problems) const;

    /// Moves the new nodes into the view, which must have reserved memory for them.
    void Commit() noexcept;

    /// The cycles of references that BuildAll found.
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
    std::vector<PluginNode> _replaced; ///< new objects that were replaced by newer ones
    std::vector<std::size_t> _order;
    std::vector<std::pair<std::size_t, GraphNode>> _reread; ///< sources of host values to be copied
};

} // namespace Mox::Host
