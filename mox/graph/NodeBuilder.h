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
#include <utility>

namespace Mox::Host {

/// Builds nodes from records. What is wrong is kept with the node.
class NodeBuilder
{
public:
    /// The node that another one means, by number.
    using NodeAt = std::function<const GraphNode&(std::size_t)>;

    /// @param view, document and maker must outlive the builder
    NodeBuilder(const GraphView& view, const IndexedDocument& document, const NodeMaker& maker,
                NodeAt nodeAt)
        : BrokenReferences(view.BrokenReferences()), _view(view), _document(document),
          _maker(maker), _nodeAt(std::move(nodeAt))
    {}

    /// Makes a node with default values, or a placeholder if its type fails.
    /// @param index number of the record in the document
    GraphNode Make(std::size_t index, const DocumentNode& record) const;

    /// Loads the properties of a record into a node that is shown. What does not fit is left out.
    /// @returns the names of the properties that were left out
    std::set<std::string> Load(GraphNode& node, std::size_t index,
                               const DocumentNode& record) const;

    /// Lets a node that is shown build its ports.
    void BuildPorts(GraphNode& node) const;

    /// All three steps.
    GraphNode Build(std::size_t index, const DocumentNode& record) const;

    /// Gives a property of a node a value as documents have it.
    /// @param index number of the node's record
    /// @throws HostError if the property does not accept the value; it is as before then
    void Set(Materials::GuiProperty& property, const DocumentProperty& value, std::size_t index,
             const Place& where) const;

    /// The node that another one means by an id: nothing if there is none, an empty handle if
    /// references to it are left out without a problem.
    std::optional<boost::shared_ptr<Materials::GuiNode>> LookUp(std::size_t referrer,
                                                                const std::string& id) const;

    /// The id of a node object, or an empty text.
    std::string IdOf(const Materials::GuiNode* node) const;

    /// The object that stands for a node from now on.
    boost::shared_ptr<Materials::GuiNode>
    Renew(const boost::shared_ptr<Materials::GuiNode>& node) const;

    /// References that are left out.
    std::set<NodeReference> BrokenReferences;

private:
    const GraphView& _view;
    const IndexedDocument& _document;
    const NodeMaker& _maker;
    NodeAt _nodeAt;
};

} // namespace Mox::Host
