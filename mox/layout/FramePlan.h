#pragma once

#include "mox/graph/MaterialGraph.h"

#include <cstddef>
#include <vector>

namespace Mox::Host {

/// Selected nodes and annotations of a material, called items, and the frame that contains each
/// one.
///
/// A node or note belongs to the smallest frame that contains its upper-left corner, because a
/// document does not store the size of a node. A frame belongs to the smallest frame that contains
/// all of it. Among frames of equal area, the later one counts as smaller.
struct FramePlan
{
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    /// Indices in document order. The items are these nodes followed by these annotations.
    std::vector<std::size_t> Nodes;
    std::vector<std::size_t> Annotations;

    std::vector<std::size_t> Parents; ///< by item: the enclosing frame's item, or None
    std::vector<std::size_t> Frames;  ///< items that are frames; each precedes the frame that
                                      ///< contains it

    std::size_t ItemCount() const { return Nodes.size() + Annotations.size(); }
};

/// Determines the enclosing frames in time proportional to items times frames.
/// @param parts if empty, the whole material
/// @throws HostError if there is no such node or annotation
FramePlan PlanFrames(const MaterialGraph& graph, const GraphParts& parts = {});

/// The upper-left corner of a node as stored in its properties; 0 if not set.
struct NodeCorner
{
    float X = 0;
    float Y = 0;
};
NodeCorner CornerOf(const GraphNode& node);

} // namespace Mox::Host
