#pragma once

#include "Material.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Python {

class Edit;

/// A node of a material, found by its id whenever it is used. An edit that adds the node makes a
/// view of it before it exists.
struct NodeView
{
    std::shared_ptr<Material> Owner;
    std::string Id;
    std::shared_ptr<const Edit> Draft = {}; ///< the edit that adds it; may be null

    friend bool operator==(const NodeView& a, const NodeView& b)
    {
        return a.Owner == b.Owner && a.Id == b.Id;
    }

    std::string Type() const;
    std::string Title() const;
    int Line() const;
    bool IsPlaceholder() const;

    /// Of all properties, in the order of the type.
    std::vector<std::pair<std::string, Value>> Values() const;

    /// Upper left corner in an editor, in pixels.
    std::pair<float, float> Position() const;
};

/// What a port is at one time.
struct PortState
{
    std::string Label;
    bool IsInput = false;
    std::optional<std::int32_t> Components; ///< nothing until resolution finds it
    std::optional<std::string> Precision;   ///< likewise
    bool IsConnected = false;
    bool HasConflict = false; ///< of component counts
};

/// A port of a node, found by its name whenever it is used.
struct PortView
{
    NodeView Node;
    std::string Name;

    friend bool operator==(const PortView& a, const PortView& b) = default;

    /// @throws StaleView if there is no such port
    PortState State() const;

    /// The output that feeds an input.
    std::optional<PortView> Source() const;

    /// The inputs that an output feeds.
    std::vector<PortView> Readers() const;
};

/// An edge as the document has it.
struct EdgeView
{
    PortView Tail;
    PortView Head;

    friend bool operator==(const EdgeView& a, const EdgeView& b) = default;
};

std::vector<NodeView> NodesOf(Material& material);
std::vector<EdgeView> EdgesOf(Material& material);

/// @throws StaleView if the node is gone
std::vector<PortView> PortsOf(const NodeView& node, bool inputs);

/// Whether a port may be named: one of the node, or any one of a node that is being added.
bool HasPort(const NodeView& node, const std::string& name);

} // namespace Mox::Python
