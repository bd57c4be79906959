#include "mox/layout/MaterialLayout.h"

#include "mox/Text.h"
#include "mox/graph/NodePosition.h"
#include "mox/layout/LayeredLayout.h"
#include "mox/layout/NodeShape.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

float PositionOf(const GraphNode& node, const char* property)
{
    const auto& properties = node.Gui.Properties().Index;
    const auto found = properties.find(property);
    return found == properties.end() ? 0 : found->second->Floats[0];
}

/// A position that nodes can be laid out from.
double AnchorOf(const GraphNode& node, const char* property)
{
    const float position = PositionOf(node, property);
    return std::abs(position) <= farthestPosition ? std::round(position) : 0;
}

/// The nodes to be laid out, by number, in document order.
std::vector<std::size_t> ChooseNodes(const MaterialGraph& graph,
                                     const std::vector<std::string>& ids)
{
    std::set<std::size_t> wanted;
    for (const std::string& id : ids)
        wanted.insert(graph.FindNode(id, {graph.Document().File}));
    std::vector<std::size_t> chosen;
    const auto nodes = graph.Nodes();
    for (auto node = nodes.begin(); node != nodes.end(); ++node) {
        if (ids.empty() || wanted.contains(node.Index()))
            chosen.push_back(node.Index());
    }
    return chosen;
}

/// The edges among the nodes that are laid out.
std::vector<LayoutEdge> EdgesAmong(const MaterialGraph& graph,
                                   const std::vector<std::size_t>& chosen)
{
    constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    const auto nodes = graph.Nodes();
    std::vector<std::size_t> places(nodes.IndexEnd(), none);
    for (std::size_t place = 0; place < chosen.size(); ++place)
        places[chosen[place]] = place;
    std::vector<LayoutEdge> edges;
    for (const GraphEdge& edge : graph.Edges()) {
        if (places[edge.Tail] == none || places[edge.Head] == none)
            continue;
        const PluginNode& tail = nodes[edge.Tail].Gui;
        const PluginNode& head = nodes[edge.Head].Gui;
        edges.push_back({places[edge.Tail], places[edge.Head],
                         NodeShape::PortOffset(tail.FindOutputPort(edge.Gui->TailPort)),
                         NodeShape::PortOffset(head.FindInputPort(edge.Gui->HeadPort))});
    }
    return edges;
}

/// The upper left corner of the area that nodes cover now.
LayoutPoint CornerOf(const MaterialGraph& graph, const std::vector<std::size_t>& chosen)
{
    LayoutPoint corner;
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        const GraphNode& node = graph.Nodes()[chosen[i]];
        const LayoutPoint point = {AnchorOf(node, positionX), AnchorOf(node, positionY)};
        if (i == 0)
            corner = point;
        corner = {std::min(corner.X, point.X), std::min(corner.Y, point.Y)};
    }
    return corner;
}

void Move(const GraphNode& node, const char* property, double value, SetProperties& moves)
{
    if (PositionOf(node, property) == static_cast<float>(value))
        return;
    moves.Settings.push_back(
        {node.Id, {property, GuiPropertyKind::Float, Compose(static_cast<std::int64_t>(value))}});
}

} // namespace

GraphChange LayOutMaterial(const MaterialGraph& graph, const std::vector<std::string>& ids)
{
    const std::vector<std::size_t> chosen = ChooseNodes(graph, ids);
    std::vector<LayoutNode> shapes;
    for (const std::size_t node : chosen) {
        const NodeShape shape = ShapeOf(graph.Nodes()[node]);
        shapes.push_back({shape.Width, shape.Height});
    }
    const Layout layout = LayOutInLayers(shapes, EdgesAmong(graph, chosen));
    const LayoutPoint corner = ids.empty() ? LayoutPoint() : CornerOf(graph, chosen);
    SetProperties moves;
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        const GraphNode& node = graph.Nodes()[chosen[i]];
        Move(node, positionX, corner.X + layout.Points[i].X, moves);
        Move(node, positionY, corner.Y + layout.Points[i].Y, moves);
    }
    if (moves.Settings.empty())
        return {};
    return {{std::move(moves)}};
}

} // namespace Mox::Host
