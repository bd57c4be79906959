#include "mox/layout/MaterialLayout.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/graph/HostValues.h"
#include "mox/layout/FrameLayout.h"
#include "mox/layout/FramePlan.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

/// Rounds a position from which a layout starts; one that is too far out becomes 0.
double AnchorAt(float position)
{
    return std::abs(position) <= farthestPosition ? std::round(position) : 0;
}

/// The upper-left corner of the area that the items of a plan currently cover.
LayoutPoint CornerOfPlan(const MaterialGraph& graph, const FramePlan& plan)
{
    std::vector<LayoutPoint> corners;
    for (const std::size_t node : plan.Nodes) {
        const NodeCorner corner = CornerOf(graph.Nodes()[node]);
        corners.push_back({AnchorAt(corner.X), AnchorAt(corner.Y)});
    }
    for (const std::size_t number : plan.Annotations) {
        const DocumentPoint& corner = graph.Document().Annotations[number].Corner;
        corners.push_back({static_cast<double>(corner.X), static_cast<double>(corner.Y)});
    }
    LayoutPoint least = corners.empty() ? LayoutPoint() : corners.front();
    for (const LayoutPoint& corner : corners)
        least = {std::min(least.X, corner.X), std::min(least.Y, corner.Y)};
    return least;
}

void Move(const GraphNode& node, const char* property, float before, double value,
          SetProperties& moves)
{
    if (before == static_cast<float>(value))
        return;
    moves.Settings.push_back(
        {node.Id, {property, GuiPropertyKind::Float, Compose(static_cast<std::int64_t>(value))}});
}

std::int32_t Limit(double value, std::int32_t least)
{
    return static_cast<std::int32_t>(
        std::clamp<double>(std::ceil(value), least, farthestCoordinate));
}

/// Returns an annotation with the position and size that a layout assigns to it.
DocumentAnnotation Placed(DocumentAnnotation annotation, const LayoutPoint& corner,
                          const LayoutNode& size)
{
    annotation.Corner = {Limit(corner.X, -farthestCoordinate),
                         Limit(corner.Y, -farthestCoordinate)};
    annotation.Width = Limit(size.Width, 1);
    annotation.Height = Limit(size.Height, 1);
    return annotation;
}

void RemovePoints(const MaterialGraph& graph, const FramePlan& plan, GraphChange& change)
{
    std::vector<bool> isPlaced(graph.Nodes().IndexEnd());
    for (const std::size_t node : plan.Nodes)
        isPlaced[node] = true;
    const auto edges = graph.Edges();
    for (auto edge = edges.begin(); edge != edges.end(); ++edge) {
        DocumentEdge record = graph.Document().Edges[edge.Index()];
        if (record.Points.empty() || (!isPlaced[edge->Tail] && !isPlaced[edge->Head]))
            continue;
        record.Points.clear();
        change.Steps.emplace_back(SetPoints{std::move(record)});
    }
}

} // namespace

GraphChange LayOutMaterial(const MaterialGraph& graph, const GraphParts& parts)
{
    const FramePlan plan = PlanFrames(graph, parts);
    const FrameLayout layout(graph, plan);
    const LayoutPoint corner = parts.IsEmpty() ? LayoutPoint() : CornerOfPlan(graph, plan);
    std::vector<LayoutPoint> points = layout.Points();
    for (LayoutPoint& point : points)
        point = {corner.X + point.X, corner.Y + point.Y};
    GraphChange change;
    SetProperties moves;
    for (std::size_t i = 0; i < plan.Nodes.size(); ++i) {
        const GraphNode& node = graph.Nodes()[plan.Nodes[i]];
        const NodeCorner before = CornerOf(node);
        Move(node, positionX, before.X, points[i].X, moves);
        Move(node, positionY, before.Y, points[i].Y, moves);
    }
    if (!moves.Settings.empty())
        change.Steps.emplace_back(std::move(moves));
    for (std::size_t i = 0; i < plan.Annotations.size(); ++i) {
        const DocumentAnnotation& before = graph.Document().Annotations[plan.Annotations[i]];
        const std::size_t item = plan.Nodes.size() + i;
        DocumentAnnotation after = Placed(before, points[item], layout.Sizes()[item]);
        if (after.Corner != before.Corner || after.Width != before.Width ||
            after.Height != before.Height)
            change.Steps.emplace_back(SetAnnotation{std::move(after)});
    }
    RemovePoints(graph, plan, change);
    return change;
}

} // namespace Mox::Host
