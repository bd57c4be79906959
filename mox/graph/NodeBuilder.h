#pragma once

#include "mox/authoring/GuiProperty.h"
#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphView.h"
#include "mox/graph/NodeMaker.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace Mox::Host {

/// Builds nodes from records. Problems are stored in the node.
class NodeBuilder
{
public:
    /// Returns the node that a reference resolves to, by index.
    using NodeAt = std::function<const GraphNode&(std::size_t)>;

    /// @param view, document and maker must outlive the builder
    NodeBuilder(const GraphView& view, const IndexedDocument& document, const NodeMaker& maker,
                NodeAt nodeAt)
        : BrokenReferences(view.BrokenReferences()), _view(view), _document(document),
          _maker(maker), _nodeAt(std::move(nodeAt))
    {}

    /// Creates a node with default values, or a placeholder if its type fails.
    /// @param index of the record in the document
    GraphNode Make(std::size_t index, const DocumentNode& record) const;

    /// Loads the properties of a record into a shown node. Invalid properties are omitted.
    /// @returns the names of the omitted properties
    std::set<std::string> Load(GraphNode& node, std::size_t index,
                               const DocumentNode& record) const;

    /// Makes a shown node build its ports.
    void BuildPorts(GraphNode& node) const;

    /// Performs all three steps.
    GraphNode Build(std::size_t index, const DocumentNode& record) const;

    /// Sets a property of a node to a value in document format.
    /// @param index of the node's record
    /// @throws HostError if the property does not accept the value; the property is then unchanged
    void Set(Materials::GuiProperty& property, const DocumentProperty& value, std::size_t index,
             const Place& where) const;

    /// Resolves an id that a node refers to.
    /// @returns nullopt if there is no such node, or a null handle if references to it are omitted
    ///          without a problem
    std::optional<boost::shared_ptr<Materials::GuiNode>> LookUp(std::size_t referrer,
                                                                const std::string& id) const;

    /// The id of a node object, or an empty string.
    std::string IdOf(const Materials::GuiNode* node) const;

    /// Returns the current object of a node, which may have been replaced.
    boost::shared_ptr<Materials::GuiNode>
    Renew(const boost::shared_ptr<Materials::GuiNode>& node) const;

    /// References that are omitted.
    std::set<NodeReference> BrokenReferences;

private:
    const GraphView& _view;
    const IndexedDocument& _document;
    const NodeMaker& _maker;
    NodeAt _nodeAt;
};

/// Returns a suggestion to append to the message that a node has no property with this name.
/// Returns an empty string for a placeholder, because the properties of its type are unknown.
std::string SuggestProperty(std::string_view name, const GraphNode& node);

} // namespace Mox::Host
