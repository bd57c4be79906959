#pragma once

#include "mox/graph/GraphView.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace Mox::Host {

/// Sizes of text in a drawn node, in points.
constexpr float nodeTitleSize = 11;
constexpr float nodePortSize = 9;
constexpr float nodeSmallSize = 8; ///< of the id and of the types at ports

constexpr std::size_t maxNameLength = 40; ///< characters of a name in a diagram

/// The title of a node; its id if the node fails to say one.
std::string TitleOf(const GraphNode& node);

/// About how large a node is when it is drawn with its icon, title, id and ports, in pixels of
/// which 96 make an inch. Fonts are not measured, so it is on the large side.
struct NodeShape
{
    float Width = 0;
    float Height = 0;

    /// How far below the upper edge of a node a port of either side is.
    /// @param index of the port; -1 for one that the node does not have
    static float PortOffset(std::int32_t index);
};

NodeShape ShapeOf(const GraphNode& node);

} // namespace Mox::Host
