#pragma once

#include "mox/graph/GraphParts.h"
#include "mox/graph/MaterialGraph.h"

#include <cstddef>
#include <vector>

namespace Mox::Host {

/// Some nodes and annotations of a material, its items, and the frame that each of them is in.
///
/// A node or note is in the smallest frame that its upper left corner is in, since a document knows
/// no more of where a node is. A frame is in the smallest one that has all of it. Of frames with
/// the same area the later one counts as the smaller.
struct FramePlan
{
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    /// Numbers in document order. The items are these nodes and then these annotations.
    std::vector<std::size_t> Nodes;
    std::vector<std::size_t> Annotations;

    std::vector<std::size_t> Parents; ///< by item: the item of the frame that it is in, or None
    std::vector<std::size_t> Frames;  ///< items; each comes before the frame that it is in

    std::size_t ItemCount() const { return Nodes.size() + Annotations.size(); }
};

/// The time grows with items times frames.
/// @param parts none for all of the material
/// @throws HostError if there is no such node or annotation
FramePlan PlanFrames(const MaterialGraph& graph, const GraphParts& parts = {});

/// The upper left corner of a node as its properties say; zeros without them.
struct NodeCorner
{
    float X = 0;
    float Y = 0;
};
NodeCorner CornerOf(const GraphNode& node);

} // namespace Mox::Host
