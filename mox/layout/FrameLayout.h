#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/layout/FramePlan.h"
#include "mox/layout/LayeredLayout.h"

#include <cstddef>
#include <vector>

namespace Mox::Host {

/// Places the items of a plan, each frame with what is in it as one item of what is around it.
class FrameLayout
{
public:
    /// @param graph and plan must outlive the layout
    FrameLayout(const MaterialGraph& graph, const FramePlan& plan);

    /// Where the items are, from 0, 0 on.
    const std::vector<LayoutPoint>& Points() const { return _points; }

    /// How large they are; frames with content fit around it.
    const std::vector<LayoutNode>& Sizes() const { return _sizes; }

private:
    /// What is in a frame, or outside all frames, and laid out together.
    struct Group
    {
        std::vector<std::size_t> Items; ///< in order
        std::vector<LayoutEdge> Edges;  ///< between nodes in different ones of these items
    };

    std::size_t ParentGroup(std::size_t item) const;
    void FillGroups();
    void Sort(const LayoutEdge& edge, const std::vector<std::size_t>& depths);
    void PlaceGroup(std::size_t group);
    std::size_t Lift(std::size_t item, std::size_t group, double& offset) const;

    const MaterialGraph& _graph;
    const FramePlan& _plan;
    std::vector<LayoutNode> _sizes;
    std::vector<LayoutPoint> _points;    ///< while frames are placed, from the corner of the frame
    std::vector<std::size_t> _ranks;     ///< of the first node in each item; edges lead upwards
    std::vector<Group> _groups;          ///< by item of the frame; the last one is outside of all
    std::vector<std::size_t> _positions; ///< of items in their groups
};

} // namespace Mox::Host
