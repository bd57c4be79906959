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

/// A line from the right edge of one node to the left edge of another one.
struct LayoutEdge
{
    std::size_t Tail = 0;
    std::size_t Head = 0;
    double TailOffset = 0; ///< how far below the upper edge of the node it begins
    double HeadOffset = 0; ///< and ends
};

/// The upper left corner of a node. y grows downwards.
struct LayoutPoint
{
    double X = 0;
    double Y = 0;
};

struct Layout
{
    std::vector<LayoutPoint> Points; ///< by node, whole pixels from 0 on
    std::size_t StepCount = 0;       ///< visits of nodes and edges, and comparisons
};

/// Places nodes in columns so that each edge runs from left to right and no nodes overlap.
///
/// A node stands in the column before its nearest reader, or in the last one. Within the columns
/// nodes are ordered and placed by the mean of what they are joined to, in a fixed number of sweeps
/// over all edges, without recursion. So the time grows with nodes and edges, but for the sorting
/// within a column. Parts that are not joined stand below each other in the order of their first
/// nodes; nodes without edges stand in rows below them. The same input yields the same layout.
/// @param edges have no cycle
Layout LayOutInLayers(const std::vector<LayoutNode>& nodes, const std::vector<LayoutEdge>& edges);

} // namespace Mox::Host
