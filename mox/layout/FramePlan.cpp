#include "mox/layout/FramePlan.h"

#include "mox/graph/HostValues.h"

#include <algorithm>
#include <set>

namespace Mox::Host {

namespace {

struct Area
{
    double X = 0;
    double Y = 0;
    double Width = 0;
    double Height = 0;

    double Size() const { return Width * Height; }

    bool Contains(const Area& other) const
    {
        return X <= other.X && other.X + other.Width <= X + Width && Y <= other.Y &&
               other.Y + other.Height <= Y + Height;
    }
};

float ValueOf(const GraphNode& node, const char* property)
{
    const auto& properties = node.Gui.Properties().Index;
    const auto found = properties.find(property);
    return found == properties.end() ? 0 : found->second->Floats[0];
}

/// The area of an item that must lie in a frame for the item to belong to the frame.
Area AreaOf(const DocumentAnnotation& annotation)
{
    const auto x = static_cast<double>(annotation.Corner.X);
    const auto y = static_cast<double>(annotation.Corner.Y);
    if (annotation.Kind == AnnotationKind::Note)
        return {x, y};
    return {x, y, static_cast<double>(annotation.Width), static_cast<double>(annotation.Height)};
}

/// The indices of the requested records, or of all records, in document order.
template <class Records>
std::vector<std::size_t> Choose(const Records& records, const std::set<std::size_t>& wanted,
                                bool isAll)
{
    std::vector<std::size_t> chosen;
    for (auto record = records.begin(); record != records.end(); ++record) {
        if (isAll || wanted.contains(record.Index()))
            chosen.push_back(record.Index());
    }
    return chosen;
}

} // namespace

NodeCorner CornerOf(const GraphNode& node)
{
    return {ValueOf(node, positionX), ValueOf(node, positionY)};
}

FramePlan PlanFrames(const MaterialGraph& graph, const GraphParts& parts)
{
    std::set<std::size_t> nodes;
    for (const std::string& id : parts.Nodes)
        nodes.insert(graph.FindNode(id, {graph.Document().File}));
    std::set<std::size_t> annotations;
    for (const std::string& id : parts.Annotations)
        annotations.insert(graph.FindAnnotation(id));
    FramePlan plan;
    plan.Nodes = Choose(graph.Nodes(), nodes, parts.IsEmpty());
    const auto& records = graph.Document().Annotations;
    plan.Annotations = Choose(records, annotations, parts.IsEmpty());

    std::vector<Area> areas;
    for (const std::size_t node : plan.Nodes) {
        const NodeCorner corner = CornerOf(graph.Nodes()[node]);
        areas.push_back({corner.X, corner.Y});
    }
    for (const std::size_t annotation : plan.Annotations) {
        if (records[annotation].Kind == AnnotationKind::Frame)
            plan.Frames.push_back(areas.size());
        areas.push_back(AreaOf(records[annotation]));
    }
    std::ranges::sort(plan.Frames, [&](std::size_t left, std::size_t right) {
        return areas[left].Size() != areas[right].Size() ? areas[left].Size() < areas[right].Size()
                                                         : left > right;
    });

    plan.Parents.assign(areas.size(), FramePlan::None);
    // For each frame, the position in Frames of the next larger one.
    std::vector<std::size_t> places(areas.size());
    for (std::size_t place = 0; place < plan.Frames.size(); ++place)
        places[plan.Frames[place]] = place + 1;
    for (std::size_t item = 0; item < areas.size(); ++item) {
        const auto parent = std::find_if(
            plan.Frames.begin() + static_cast<std::ptrdiff_t>(places[item]), plan.Frames.end(),
            [&](std::size_t frame) { return areas[frame].Contains(areas[item]); });
        if (parent != plan.Frames.end())
            plan.Parents[item] = *parent;
    }
    return plan;
}

} // namespace Mox::Host
