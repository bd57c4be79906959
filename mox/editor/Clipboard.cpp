#include "mox/editor/Clipboard.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/graph/BindingsDocument.h"
#include "mox/graph/GraphCopy.h"
#include "mox/graph/NodePosition.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace Mox::Host {

using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

using BindingKey = std::pair<std::string, std::string>; ///< stream and tag

/// The bindings that nodes create. A node that fails creates none.
std::set<BindingKey> BindingsOf(const MaterialGraph& graph, const std::vector<std::string>& ids)
{
    std::set<BindingKey> keys;
    for (const std::string& id : ids) {
        try {
            const std::size_t node = graph.FindNode(id, {graph.Document().File});
            for (const PluginBinding& binding : CreateNodeBindings(graph.Nodes()[node]))
                keys.emplace(binding.StreamName(), binding.Tag());
        } catch (const HostError&) {
            continue; // the copy itself reports what is wrong with the node
        }
    }
    return keys;
}

MaterialDocument Parse(std::string_view text)
{
    ProblemList problems;
    MaterialDocument document = ParseMaterialDocument("pasted text", text, problems);
    problems.ThrowFirstError();
    return document;
}

/// A position that can be moved without a loss of precision.
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

/// Moves the nodes that a change adds.
void Move(GraphChange& change, const std::optional<LayoutPoint>& corner)
{
    constexpr double step = 32;
    std::vector<DocumentNode*> nodes;
    for (GraphStep& changed : change.Steps) {
        if (auto* add = std::get_if<AddNode>(&changed))
            nodes.push_back(&add->Node);
    }
    if (nodes.empty())
        return;
    LayoutPoint shift = {step, step};
    if (corner) {
        LayoutPoint least = {PositionOf(*nodes.front(), positionX),
                             PositionOf(*nodes.front(), positionY)};
        for (const DocumentNode* node : nodes) {
            least.X = std::min(least.X, PositionOf(*node, positionX));
            least.Y = std::min(least.Y, PositionOf(*node, positionY));
        }
        const auto limit = [](double position) {
            return std::clamp<double>(position, -farthestPosition, farthestPosition);
        };
        shift = {limit(corner->X) - least.X, limit(corner->Y) - least.Y};
    }
    for (DocumentNode* node : nodes) {
        SetPosition(*node, positionX, PositionOf(*node, positionX) + shift.X);
        SetPosition(*node, positionY, PositionOf(*node, positionY) + shift.Y);
    }
}

} // namespace

std::string CopyAsText(const MaterialGraph& graph, const std::vector<std::string>& ids,
                       const PluginSet& plugins)
{
    MaterialGraph part{NodeMaker(plugins)};
    GraphChange change = CopyNodes(graph, ids, part);
    const std::set<BindingKey> keys = BindingsOf(graph, ids);
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
    // Comments may change when they are written, and a change must be the same for the journal.
    const MaterialGraph part(Parse(FormatMaterialDocument(Parse(text))), NodeMaker(plugins));
    std::vector<std::string> ids;
    for (const DocumentNode& node : part.Document().Nodes)
        ids.push_back(node.Id);
    GraphChange change = CopyNodes(part, ids, into);
    Move(change, corner);
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
