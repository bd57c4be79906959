#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/layout/FramePlan.h"
#include "mox/layout/LayeredLayout.h"

#include <cstddef>
#include <vector>

namespace Mox::Host {

/// Positions the items of a plan. A frame and its content are treated as one item of the enclosing
/// frame.
class FrameLayout
{
public:
    /// @param graph and plan must outlive the layout
    FrameLayout(const MaterialGraph& graph, const FramePlan& plan);

    /// Positions of the items, starting at 0, 0.
    const std::vector<LayoutPoint>& Points() const { return _points; }

    /// Sizes of the items; frames with content are sized to fit it.
    const std::vector<LayoutNode>& Sizes() const { return _sizes; }

private:
    /// The content of one frame, or everything outside frames, which is laid out together.
    struct Group
    {
        std::vector<std::size_t> Items; ///< in document order
        std::vector<LayoutEdge> Edges;  ///< between nodes in different items of the group
    };

    std::size_t ParentGroup(std::size_t item) const;
    void FillGroups();
    void Sort(const LayoutEdge& edge, const std::vector<std::size_t>& depths);
    void PlaceGroup(std::size_t group);
    std::size_t Lift(std::size_t item, std::size_t group, double& offset) const;

    const MaterialGraph& _graph;
    const FramePlan& _plan;
    std::vector<LayoutNode> _sizes;
    std::vector<LayoutPoint> _points;    ///< relative to the enclosing frame while frames are being
                                         ///< placed
    std::vector<std::ptrdiff_t> _ranks;  ///< rank of the first node in each item; edges run from
                                         ///< lower to higher ranks
    std::vector<Group> _groups;          ///< one per item, for its content; the last group is
                                         ///< outside all frames
    std::vector<std::size_t> _positions; ///< index of each item in its group
};

} // namespace Mox::Host
