#pragma once

#include <cstddef>
#include <vector>

namespace Mox::Host {

/// A rectangle to be placed, in pixels.
struct LayoutNode
{
    double Width = 0;
    double Height = 0;
};

/// A line from the right edge of one node to the left edge of another.
struct LayoutEdge
{
    std::size_t Tail = 0;
    std::size_t Head = 0;
    double TailOffset = 0; ///< start, measured from the top of the tail node
    double HeadOffset = 0; ///< end, measured from the top of the head node
};

/// The upper-left corner of a node; y increases downwards.
struct LayoutPoint
{
    double X = 0;
    double Y = 0;
};

struct Layout
{
    std::vector<LayoutPoint> Points; ///< by node, in whole pixels starting at 0
    std::size_t StepCount = 0;       ///< number of node visits, edge visits and comparisons
};

/// Places nodes in columns so that each edge runs from left to right and no nodes overlap.
///
/// A node is placed in the column before its nearest reader, or in the last column. Within columns,
/// nodes are sorted and positioned by the mean of their neighbours, in a fixed number of sweeps
/// over all edges, without recursion. The time is therefore linear in nodes and edges, apart from
/// sorting within a column. Unconnected parts are placed below each other in the order of their
/// first nodes; nodes without edges form rows below them. The same input always yields the same
/// layout.
/// @param edges must not form a cycle
Layout LayOutInLayers(const std::vector<LayoutNode>& nodes, const std::vector<LayoutEdge>& edges);

} // namespace Mox::Host
