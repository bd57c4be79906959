#pragma once

#include "Material.h"
#include "mox/host/NearestName.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Python {

class Edit;

/// A node of a material, looked up by its id on each use. While an edit is adding the node, a view
/// of it can exist before the node does.
struct NodeView
{
    std::shared_ptr<Material> Owner;
    std::string Id;
    std::shared_ptr<const Edit> Draft = {}; ///< the edit that is adding the node, or null

    friend bool operator==(const NodeView& a, const NodeView& b)
    {
        return a.Owner == b.Owner && a.Id == b.Id;
    }

    std::string Type() const;
    std::string Title() const;
    int Line() const;
    bool IsPlaceholder() const;

    /// The values of all properties, in the order of the type.
    std::vector<std::pair<std::string, Value>> Values() const;

    /// Upper-left corner in an editor, in pixels.
    std::pair<float, float> Position() const;
};

/// A snapshot of the state of a port.
struct PortState
{
    std::string Label;
    bool IsInput = false;
    std::optional<std::int32_t> Components; ///< empty until resolution determines it
    std::optional<std::string> Precision;   ///< likewise
    bool IsConnected = false;
    bool HasConflict = false; ///< conflicting component counts
};

/// A port of a node, looked up by its name on each use.
struct PortView
{
    NodeView Node;
    std::string Name;

    friend bool operator==(const PortView& a, const PortView& b) = default;

    /// @throws StaleView if there is no such port
    PortState State() const;

    /// Returns the output that feeds this input.
    std::optional<PortView> Source() const;

    /// Returns the inputs that this output feeds.
    std::vector<PortView> Readers() const;
};

/// An edge as stored in the document.
struct EdgeView
{
    PortView Tail;
    PortView Head;

    friend bool operator==(const EdgeView& a, const EdgeView& b) = default;
};

std::vector<NodeView> NodesOf(Material& material);
std::vector<EdgeView> EdgesOf(Material& material);

/// @throws StaleView if the node no longer exists
std::vector<PortView> PortsOf(const NodeView& node, bool inputs);

/// The names and labels of the ports, inputs before outputs.
/// @throws StaleView if the node no longer exists
std::vector<Host::RightName> PortNamesOf(const NodeView& node);

/// Whether the node has a port of this name; true for any name while the node is being added.
bool HasPort(const NodeView& node, const std::string& name);

} // namespace Mox::Python
