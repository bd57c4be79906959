#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/GraphStore.h"
#include "mox/graph/NodeSnapshot.h"
#include "mox/graph/Rollback.h"
#include "mox/host/Problem.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

/// One run of a change over a graph. Unless it is finished, all that was done is taken back.
class GraphEdit
{
public:
    explicit GraphEdit(GraphStore& graph) : _graph(graph) {}
    GraphEdit(const GraphEdit&) = delete;
    GraphEdit& operator=(const GraphEdit&) = delete;
    ~GraphEdit() = default;

    /// Do one step.
    /// @throws HostError if it does not fit the graph
    void operator()(const AddNode& step);
    void operator()(const RemoveNode& step);
    void operator()(const RenameNode& step);
    void operator()(const AddEdge& step);
    void operator()(const RemoveEdge& step);
    void operator()(const SetProperties& step);

    /// Makes what was done last.
    /// @returns the change that takes it back
    GraphChange Finish();

private:
    using Snapshots = std::map<std::size_t, std::shared_ptr<NodeSnapshot>>;

    std::size_t FindNode(const std::string& id) const;
    Place PlaceOf(const std::string& node) const;
    void DropEdge(std::size_t edge);
    void Rebuild(std::size_t node, Snapshots& snapshots);
    void Remember(std::size_t node, Snapshots& snapshots);
    void SetProperty(std::size_t node, const DocumentProperty& value, Snapshots& snapshots,
                     std::vector<PropertySetting>& old);
    void SetStoredProperty(std::size_t node, const DocumentProperty& value,
                           std::vector<PropertySetting>& old);
    void WriteStored(std::size_t node, std::size_t property, const std::string& value);
    void RefreshReferences(std::size_t node);
    std::vector<std::size_t> OrderReferrers(const std::vector<std::size_t>& changed) const;

    GraphStore& _graph;
    std::vector<GraphStep> _inverse; ///< last step first
    std::vector<std::size_t> _removedNodes;
    std::vector<std::size_t> _removedEdges;
    Rollback _rollback; ///< behind the rest, so it runs first
};

} // namespace Mox::Host
