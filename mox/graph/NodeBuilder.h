#pragma once

#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphView.h"
#include "mox/graph/NodeLoader.h"
#include "mox/graph/NodeMaker.h"

#include <cstddef>
#include <functional>
#include <set>
#include <string>

namespace Mox::Host {

/// Builds nodes from records. What is wrong is kept with the node.
class NodeBuilder
{
public:
    /// The node that another one means, by number.
    using NodeAt = std::function<const GraphNode&(std::size_t)>;

    /// @param document, maker must outlive the builder
    NodeBuilder(const IndexedDocument& document, const NodeMaker& maker, NodeAt nodeAt)
        : _document(document), _maker(maker), _nodeAt(std::move(nodeAt))
    {}

    /// Makes a node with default values, or a placeholder if its type fails.
    /// @param index number of the record in the document
    GraphNode Make(std::size_t index, const DocumentNode& record) const;

    /// Loads the properties of a record into a node that is shown.
    /// @returns the names of the properties that were left out
    std::set<std::string> Load(GraphNode& node, std::size_t index,
                               const DocumentNode& record) const;

    /// Lets a node that is shown build its ports.
    void BuildPorts(GraphNode& node) const;

    /// All three steps.
    GraphNode Build(std::size_t index, const DocumentNode& record) const;

    /// Finds the nodes that a node may refer to.
    NodeLookUp LookUpFor(std::size_t referrer) const;

    /// References that are left out.
    std::set<NodeReference> BrokenReferences;

private:
    const IndexedDocument& _document;
    const NodeMaker& _maker;
    NodeAt _nodeAt;
};

} // namespace Mox::Host
