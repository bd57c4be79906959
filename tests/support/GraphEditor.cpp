#include "tests/support/GraphEditor.h"

#include "mox/Text.h"
#include "mox/graph/GraphCopy.h"

#include <iterator>
#include <utility>

using namespace Mox::Host;
using Mox::Materials::Compose;
using Mox::Materials::GuiPort;
using Mox::Materials::GuiPropertyKind;

namespace {

struct Setting
{
    const char* Property;
    GuiPropertyKind Kind;
    const char* Value;
};

constexpr auto e = GuiPropertyKind::Enum;
constexpr auto i = GuiPropertyKind::Integer;
constexpr auto b = GuiPropertyKind::Bool;

/// Some fit one type, some another, some none.
constexpr Setting settings[] = {
    {"Function", e, "Clamp"},
    {"Function", e, "Blend"},
    {"Function", e, "Lerp"},
    {"Function", e, "Fresnel"},
    {"Function", e, "Multiply"},
    {"Vector Type", e, "Uv"},
    {"Vector Type", e, "Vector"},
    {"Vector Type", e, "Colour"},
    {"Component Count", i, "2"},
    {"Component Count", i, "4"},
    {"Component Count", i, "7"},
    {"Reverse", b, "true"},
    {"Reverse", b, "false"},
    {"Constant Type", e, "Scalar"},
    {"Constant Type", e, "Vector"},
    {"Constant Type", e, "Component"},
    {"Alpha", b, "true"},
    {"Alpha", b, "false"},
    {"Colour Type", e, "Vector"},
    {"Colour Type", e, "Normal"},
    {"Colour Type", e, "Component"},
    {"Texture Type", e, "1D"},
    {"Mode", e, "Advanced"},
    {"Mode", e, "Basic"},
    {"Mode", e, "Screen"},
    {"PositionX", GuiPropertyKind::Float, "-0"},
    {"Name", GuiPropertyKind::String, " a\n\"b\""},
    {"Default Min", GuiPropertyKind::Float, "1e-45"},
    {"Description", GuiPropertyKind::String, "notes"},
    {"Default Colour", GuiPropertyKind::Colour, "0.1 nan -inf"},
};

constexpr const char* types[] = {"CoreMaths",    "CoreMaths",   "CoreLayerBlend", "CoreSwizzle",
                                 "CoreConstant", "CoreTexture", "CoreTexture",    "CoreAnimatedUv",
                                 "CoreUv",       "NoSuchType"};

constexpr std::size_t idCount = 40;

} // namespace

GraphEditor::GraphEditor(const MaterialGraph& graph, Choice choose)
    : _graph(graph), _choose(std::move(choose))
{}

GraphChange GraphEditor::Next()
{
    switch (_choose(20)) {
    case 0:
    case 1:
        return {{AddNode{StoredNode(), {}, _choose(2) ? "" : AnyId()}}};
    case 2:
        return {{RemoveNode{AnyId()}}};
    case 3:
        return {{RenameNode{AnyId(), Compose("n", _choose(idCount))}}};
    case 4:
        return CopyNodes(_graph, {AnyId(), AnyId(), AnyId()}, _graph);
    case 5:
        return RemoveSomeEdge();
    case 6:
        return {{SetProperties{
            {{AnyId(), {"Reference", GuiPropertyKind::Node, _choose(4) ? AnyId() : ""}}}}}};
    case 7:
    case 8:
        return {{SetProperties{{AnySetting(), AnySetting()}}}};
    case 9:
        return {{SetProperties{{AnySetting()}}}};
    default:
        return AddSomeEdge();
    }
}

const MaterialGraph::Node& GraphEditor::AnyNode() const
{
    auto node = _graph.Nodes().begin();
    std::advance(node, _choose(_graph.Nodes().size()));
    return *node;
}

std::string GraphEditor::AnyPort(const std::vector<GuiPort>& ports) const
{
    return ports.empty() ? Compose("p", _choose(3)) : ports[_choose(ports.size())].Name;
}

DocumentNode GraphEditor::StoredNode() const
{
    DocumentNode node{Compose("n", _choose(idCount)), types[_choose(std::size(types))], 0, {}, 0};
    while (_choose(3) == 1) {
        const Setting& setting = settings[_choose(std::size(settings))];
        node.Properties.push_back({setting.Property, setting.Kind, setting.Value});
    }
    if (_choose(3) == 0)
        node.Properties.push_back({"Elsewhere", GuiPropertyKind::Node, AnyId()});
    return node;
}

PropertySetting GraphEditor::AnySetting() const
{
    const Setting& setting = settings[_choose(std::size(settings))];
    return {AnyId(), {setting.Property, setting.Kind, setting.Value}};
}

GraphChange GraphEditor::AddSomeEdge() const
{
    const MaterialGraph::Node& tail = AnyNode();
    const MaterialGraph::Node& head = AnyNode();
    return {
        {AddEdge{{tail.Id, AnyPort(tail.Gui->OutputPorts), head.Id, AnyPort(head.Gui->InputPorts)},
                 {},
                 {}}}};
}

GraphChange GraphEditor::RemoveSomeEdge() const
{
    if (_graph.Edges().size() == 0)
        return {};
    auto edge = _graph.Edges().begin();
    std::advance(edge, _choose(_graph.Edges().size()));
    return {{RemoveEdge{_graph.Store().Describe(*edge)}}};
}
