#pragma once

#include "mox/document/ElementRule.h"
#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphChange.h"
#include "mox/graph/NodeStage.h"
#include "mox/graph/PropertyEdit.h"
#include "mox/host/HostError.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Mox::Host {

/// Converts the steps of a user's change into record changes, one by one, and rebuilds the affected
/// nodes. Edges are checked after all steps.
class GraphEdit
{
public:
    /// @param edit and nodes must outlive the object
    GraphEdit(DocumentEdit& edit, NodeStage& nodes) : _edit(edit), _nodes(nodes) {}

    /// Apply one step.
    /// @throws HostError if the step is not valid
    void operator()(const AddNode& step);
    void operator()(const RemoveNode& step);
    void operator()(const RenameNode& step);
    void operator()(const AddEdge& step);
    void operator()(const RemoveEdge& step);
    void operator()(const SetPoints& step);
    void operator()(const SetProperties& step);
    void operator()(const SetDescription& step);
    void operator()(const SetRenderState& step);
    void operator()(const SetBinding& step);
    void operator()(const RemoveBinding& step);
    void operator()(const AddAnnotation& step);
    void operator()(const SetAnnotation& step);
    void operator()(const RemoveAnnotation& step);

private:
    const MaterialDocument& Document() const { return _edit.Document().Document(); }
    std::size_t FindNode(const std::string& id) const;
    std::size_t FindEdge(const DocumentEdge& edge) const;
    void RequireWritable(const ElementRule& rule, const std::vector<DocumentValue>& values) const;
    Place PlaceOf(std::size_t node) const;
    void Settle(std::vector<PropertyEdit>& edits);
    void Rebuild(std::size_t node);
    void RefuseCircle(const std::vector<std::size_t>& circle) const;

    DocumentEdit& _edit;
    NodeStage& _nodes;
};

} // namespace Mox::Host
