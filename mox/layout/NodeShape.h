#pragma once

#include "mox/graph/GraphView.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace Mox::Host {

/// Text sizes in a drawn node, in points.
constexpr float nodeTitleSize = 11;
constexpr float nodePortSize = 9;
constexpr float nodeSmallSize = 8; ///< for the id and the types of ports

constexpr std::size_t maxNameLength = 40; ///< in characters, for names in a diagram

/// The title of a node; its id if the node fails to provide one.
std::string TitleOf(const GraphNode& node);

/// The approximate size of a node drawn with its icon, title, id and ports, in pixels at 96 per
/// inch. Fonts are not measured, so the estimate is generous.
struct NodeShape
{
    float Width = 0;
    float Height = 0;

    /// The distance of a port from the top edge of the node, on either side.
    /// @param index of the port; -1 for a port that the node does not have
    static float PortOffset(std::int32_t index);
};

NodeShape ShapeOf(const GraphNode& node);

} // namespace Mox::Host
