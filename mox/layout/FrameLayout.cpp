#include "mox/layout/FrameLayout.h"

#include "mox/layout/NodeShape.h"

#include <algorithm>
#include <limits>

namespace Mox::Host {

namespace {

constexpr double framePadding = 24; ///< between a frame and its content
constexpr double frameTitleHeight = 32;

/// The rank of an item without nodes.
constexpr std::ptrdiff_t noRank = std::numeric_limits<std::ptrdiff_t>::max();

} // namespace

FrameLayout::FrameLayout(const MaterialGraph& graph, const FramePlan& plan)
    : _graph(graph), _plan(plan), _points(plan.ItemCount()), _ranks(plan.ItemCount(), noRank),
      _groups(plan.ItemCount() + 1), _positions(plan.ItemCount())
{
    for (const std::size_t node : plan.Nodes) {
        const NodeShape shape = ShapeOf(graph.Nodes()[node]);
        _sizes.push_back({shape.Width, shape.Height});
    }
    for (const std::size_t number : plan.Annotations) {
        const DocumentAnnotation& annotation = graph.Document().Annotations[number];
        _sizes.push_back(
            {static_cast<double>(annotation.Width), static_cast<double>(annotation.Height)});
    }
    FillGroups();
    for (const std::size_t frame : plan.Frames)
        PlaceGroup(frame);
    PlaceGroup(plan.ItemCount());
    for (auto frame = plan.Frames.rbegin(); frame != plan.Frames.rend(); ++frame) {
        for (const std::size_t item : _groups[*frame].Items)
            _points[item] = {_points[item].X + _points[*frame].X,
                             _points[item].Y + _points[*frame].Y};
    }
}

std::size_t FrameLayout::ParentGroup(std::size_t item) const
{
    return _plan.Parents[item] == FramePlan::None ? _plan.ItemCount() : _plan.Parents[item];
}

void FrameLayout::FillGroups()
{
    std::vector<std::size_t> itemsOfNodes(_graph.Nodes().IndexEnd(), FramePlan::None);
    for (std::size_t item = 0; item < _plan.Nodes.size(); ++item) {
        itemsOfNodes[_plan.Nodes[item]] = item;
        _ranks[item] = _graph.Order().Position(_plan.Nodes[item]);
    }
    std::vector<std::size_t> depths(_groups.size()); // nesting depths of groups
    for (auto frame = _plan.Frames.rbegin(); frame != _plan.Frames.rend(); ++frame)
        depths[*frame] = depths[ParentGroup(*frame)] + 1;
    for (std::size_t item = 0; item < _plan.ItemCount(); ++item) {
        Group& group = _groups[ParentGroup(item)];
        _positions[item] = group.Items.size();
        group.Items.push_back(item);
    }
    for (const GraphEdge& edge : _graph.Edges()) {
        const std::size_t tail = itemsOfNodes[edge.Tail];
        const std::size_t head = itemsOfNodes[edge.Head];
        if (tail == FramePlan::None || head == FramePlan::None)
            continue;
        const PluginNode& tailNode = _graph.Nodes()[edge.Tail].Gui;
        const PluginNode& headNode = _graph.Nodes()[edge.Head].Gui;
        Sort({tail, head, NodeShape::PortOffset(tailNode.FindOutputPort(edge.Gui->TailPort)),
              NodeShape::PortOffset(headNode.FindInputPort(edge.Gui->HeadPort))},
             depths);
    }
}

/// Adds an edge between nodes to the smallest group that contains both.
void FrameLayout::Sort(const LayoutEdge& edge, const std::vector<std::size_t>& depths)
{
    std::size_t tail = ParentGroup(edge.Tail);
    std::size_t head = ParentGroup(edge.Head);
    while (tail != head) {
        std::size_t& deeper = depths[tail] > depths[head] ? tail : head;
        deeper = ParentGroup(deeper);
    }
    _groups[tail].Edges.push_back(edge);
}

/// Lays out a group whose frames have already been laid out.
void FrameLayout::PlaceGroup(std::size_t group)
{
    const std::vector<std::size_t>& items = _groups[group].Items;
    if (items.empty())
        return;
    const bool isFrame = group < _plan.ItemCount();
    std::vector<LayoutNode> nodes;
    for (const std::size_t item : items) {
        nodes.push_back(_sizes[item]);
        if (isFrame)
            _ranks[group] = std::min(_ranks[group], _ranks[item]);
    }
    std::vector<LayoutEdge> edges;
    for (LayoutEdge edge : _groups[group].Edges) {
        const std::size_t tail = Lift(edge.Tail, group, edge.TailOffset);
        const std::size_t head = Lift(edge.Head, group, edge.HeadOffset);
        edge.Tail = _positions[tail];
        edge.Head = _positions[head];
        if (_ranks[tail] < _ranks[head]) // prevents cycles
            edges.push_back(edge);
    }
    const Layout layout = LayOutInLayers(nodes, edges);
    const LayoutPoint inset =
        isFrame ? LayoutPoint{framePadding, framePadding + frameTitleHeight} : LayoutPoint();
    LayoutNode size;
    for (std::size_t i = 0; i < items.size(); ++i) {
        LayoutPoint& point = _points[items[i]];
        point = {layout.Points[i].X + inset.X, layout.Points[i].Y + inset.Y};
        size.Width = std::max(size.Width, point.X + nodes[i].Width + framePadding);
        size.Height = std::max(size.Height, point.Y + nodes[i].Height + framePadding);
    }
    if (isFrame)
        _sizes[group] = size;
}

/// Finds the item of a group that contains a node.
/// @param offset of a port from the top edge of the node; becomes the offset from the top of the
///        item
std::size_t FrameLayout::Lift(std::size_t item, std::size_t group, double& offset) const
{
    for (; ParentGroup(item) != group; item = ParentGroup(item))
        offset += _points[item].Y;
    return item;
}

} // namespace Mox::Host
