#include "mox/editor/Clipboard.h"

#include "mox/Text.h"
#include "mox/document/AnnotationText.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphCopy.h"
#include "mox/graph/HostValues.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

using BindingKey = std::pair<std::string, std::string>; ///< stream and tag

/// The bindings that the nodes create. A failed node creates none.
std::set<BindingKey> BindingsOf(const MaterialGraph& graph, const std::vector<std::string>& ids)
{
    std::set<BindingKey> keys;
    for (const std::string& id : ids) {
        try {
            const std::size_t node = graph.FindNode(id, {graph.Document().File});
            for (const PluginBinding& binding : CreateNodeBindings(graph.Nodes()[node]))
                keys.emplace(binding.StreamName(), binding.Tag());
        } catch (const HostError&) {
            continue; // copying the node reports what is wrong with it
        }
    }
    return keys;
}

MaterialDocument Parse(std::string_view text)
{
    return ParseMaterialDocument("pasted text", text);
}

/// Returns a stored position, or 0 if it is missing or too far out to be moved precisely.
double PositionOf(const DocumentNode& node, const char* property)
{
    for (const DocumentProperty& stored : node.Properties) {
        const double position = ParseFloat(stored.Value).value_or(0);
        if (stored.Name == property && std::abs(position) <= farthestPosition)
            return position;
    }
    return 0;
}

void SetPosition(DocumentNode& node, const char* property, double value)
{
    std::erase_if(node.Properties,
                  [&](const DocumentProperty& stored) { return stored.Name == property; });
    node.Properties.push_back(
        {property, GuiPropertyKind::Float, Compose(static_cast<float>(value)), 0, {}});
}

void Shift(DocumentPoint& point, const LayoutPoint& by)
{
    const auto move = [](std::int32_t& coordinate, double way) {
        coordinate = static_cast<std::int32_t>(std::clamp<double>(
            std::round(coordinate + way), -farthestCoordinate, farthestCoordinate));
    };
    move(point.X, by.X);
    move(point.Y, by.Y);
}

/// The offset that puts the upper-left corner of everything that a change adds at a given point.
LayoutPoint WayTo(const LayoutPoint& corner, const GraphChange& change)
{
    std::vector<LayoutPoint> corners;
    for (const GraphStep& step : change.Steps) {
        if (const auto* node = std::get_if<AddNode>(&step))
            corners.push_back(
                {PositionOf(node->Node, positionX), PositionOf(node->Node, positionY)});
        else if (const auto* added = std::get_if<AddAnnotation>(&step))
            corners.push_back(
                {double(added->Annotation.Corner.X), double(added->Annotation.Corner.Y)});
    }
    if (corners.empty())
        return {};
    LayoutPoint least = corners.front();
    for (const LayoutPoint& point : corners)
        least = {std::min(least.X, point.X), std::min(least.Y, point.Y)};
    const auto limit = [](double position) {
        return std::clamp<double>(position, -farthestPosition, farthestPosition);
    };
    return {limit(corner.X) - least.X, limit(corner.Y) - least.Y};
}

/// Moves the nodes, annotations and edge points that a change adds.
void Move(GraphChange& change, const LayoutPoint& way)
{
    for (GraphStep& step : change.Steps) {
        if (auto* node = std::get_if<AddNode>(&step)) {
            SetPosition(node->Node, positionX, PositionOf(node->Node, positionX) + way.X);
            SetPosition(node->Node, positionY, PositionOf(node->Node, positionY) + way.Y);
        } else if (auto* edge = std::get_if<AddEdge>(&step)) {
            for (DocumentPoint& point : edge->Edge.Points)
                Shift(point, way);
        } else if (auto* added = std::get_if<AddAnnotation>(&step)) {
            Shift(added->Annotation.Corner, way);
        }
    }
}

} // namespace

std::string CopyAsText(const MaterialGraph& graph, const GraphParts& parts,
                       const PluginSet& plugins)
{
    MaterialGraph part{NodeMaker(plugins)};
    GraphChange change = CopyParts(graph, parts, part);
    const std::set<BindingKey> keys = BindingsOf(graph, parts.Nodes);
    for (const DocumentBinding& binding : graph.Document().Bindings) {
        if (keys.contains({binding.Stream, binding.Tag}))
            change.Steps.emplace_back(SetBinding{binding});
    }
    part.Apply(change);
    return FormatMaterialDocument(part.Document());
}

GraphChange PasteText(std::string_view text, const MaterialGraph& into, const PluginSet& plugins,
                      const std::optional<LayoutPoint>& corner)
{
    // Writing the document may normalise comments, and the journal must record the change exactly.
    const MaterialGraph part(Parse(FormatMaterialDocument(Parse(text))), NodeMaker(plugins));
    GraphParts all;
    for (const DocumentNode& node : part.Document().Nodes)
        all.Nodes.push_back(node.Id);
    for (const DocumentAnnotation& annotation : part.Document().Annotations)
        all.Annotations.push_back(annotation.Id);
    GraphChange change = CopyParts(part, all, into);
    constexpr LayoutPoint aside = {32, 32};
    Move(change, corner ? WayTo(*corner, change) : aside);
    std::set<BindingKey> known;
    for (const DocumentBinding& binding : into.Document().Bindings)
        known.emplace(binding.Stream, binding.Tag);
    for (const DocumentBinding& binding : part.Document().Bindings) {
        if (!known.contains({binding.Stream, binding.Tag}))
            change.Steps.emplace_back(SetBinding{binding});
    }
    return change;
}

} // namespace Mox::Host
