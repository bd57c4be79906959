#include "tests/support/GraphEditor.h"

#include "mox/Text.h"
#include "mox/graph/GraphCopy.h"
#include "tests/support/MaterialText.h"

#include <iterator>
#include <utility>

using namespace Mox::Host;
using Mox::Materials::Compose;
using Mox::Materials::GuiPort;
using Mox::Materials::GuiPropertyKind;

namespace {

/// Property settings, each valid for some node types or for none.
const std::vector<DocumentProperty>& Settings()
{
    static const MaterialDocument settings = MaterialFromText(R"(
            node Type; Function:enum=Clamp; Function:enum=Blend; Function:enum=Lerp
            ; Function:enum=Fresnel; Function:enum=Multiply; Vector Type:enum=Uv
            ; Vector Type:enum=Vector; Vector Type:enum=Colour; Component Count:integer=2
            ; Component Count:integer=4; Component Count:integer=7; Reverse:bool=true
            ; Reverse:bool=false; Constant Type:enum=Scalar; Constant Type:enum=Vector
            ; Constant Type:enum=Component; Alpha:bool=true; Alpha:bool=false
            ; Colour Type:enum=Vector; Colour Type:enum=Normal; Colour Type:enum=Component
            ; Texture Type:enum=1D; Mode:enum=Advanced; Mode:enum=Basic; Mode:enum=Screen
            ; PositionX:float=-0; Name:string= a "b"; Default Min:float=1e-45
            ; Description:string=notes; Default Colour:colour=0.1 nan -inf
        )");
    return settings.Nodes[0].Properties;
}

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
    GraphChange change = NextStep();
    while (_choose(6) == 1) {
        const GraphChange more = NextStep();
        change.Steps.insert(change.Steps.end(), more.Steps.begin(), more.Steps.end());
    }
    return change;
}

GraphChange GraphEditor::NextStep() const
{
    switch (_choose(22)) {
    case 0:
    case 1:
        return {{AddNode{StoredNode(), _choose(2) ? "" : AnyId()}}};
    case 2:
        return {{RemoveNode{AnyId()}}};
    case 3:
        return {{RenameNode{AnyId(), Compose("n", _choose(idCount))}}};
    case 4:
        return CopySomeParts();
    case 5:
        return RemoveSomeEdge();
    case 6:
        return {{SetSomeReference()}};
    case 7:
    case 8:
        return {{SetProperties{{AnySetting(), AnySetting()}}}};
    case 9:
        return {{SetProperties{{AnySetting()}}}};
    case 10:
        return SetSomeValue();
    case 11:
        return ChangeSomeAnnotation();
    case 12:
        return SetSomePoints();
    default:
        return AddSomeEdge();
    }
}

std::ptrdiff_t GraphEditor::Position(std::size_t size) const
{
    return static_cast<std::ptrdiff_t>(_choose(size));
}

const MaterialGraph::Node& GraphEditor::AnyNode() const
{
    const auto nodes = _graph.Nodes();
    return *std::next(nodes.begin(), Position(nodes.size()));
}

std::string GraphEditor::AnyId() const
{
    const auto& nodes = _graph.Document().Nodes;
    return std::next(nodes.begin(), Position(nodes.size()))->Id;
}

std::string GraphEditor::IdForReference() const
{
    std::vector<std::string> ids;
    for (const DocumentNode& node : _graph.Document().Nodes) {
        if (node.Type == "CoreTexture")
            ids.push_back(node.Id);
    }
    return ids.empty() || _choose(4) == 0 ? AnyId() : ids[_choose(ids.size())];
}

std::string GraphEditor::AnyPort(const std::vector<GuiPort>& ports) const
{
    return ports.empty() ? Compose("p", _choose(3)) : ports[_choose(ports.size())].Name;
}

DocumentNode GraphEditor::StoredNode() const
{
    DocumentNode node{Compose("n", _choose(idCount)), types[_choose(std::size(types))], 0, {}, 0};
    while (_choose(3) == 1) {
        node.Properties.push_back(Settings()[_choose(Settings().size())]);
    }
    if (_choose(3) == 0)
        node.Properties.push_back(
            {_choose(3) ? "Reference" : "Elsewhere", GuiPropertyKind::Node, IdForReference()});
    return node;
}

PropertySetting GraphEditor::AnySetting() const
{
    return {AnyId(), Settings()[_choose(Settings().size())]};
}

GraphChange GraphEditor::SetSomeValue() const
{
    const std::string tag = Compose("b", _choose(3));
    switch (_choose(4)) {
    case 0:
        return {{SetDescription{{{"name", tag}}}}};
    case 1:
        return {{SetRenderState{{{"zTest", _choose(2) ? "Yes" : "No"}}}}};
    case 2:
        return {{RemoveBinding{"texture", tag}}};
    default:
        return {{SetBinding{{"texture", tag, {{"default", Compose(_choose(9), ".png")}}}}}};
    }
}

SetProperties GraphEditor::SetSomeReference() const
{
    const std::string id = IdForReference();
    return {{{id, {"Reference", GuiPropertyKind::Node, _choose(8) ? IdForReference() : ""}}}};
}

GraphChange GraphEditor::AddSomeEdge() const
{
    const MaterialGraph::Node& tail = AnyNode();
    const MaterialGraph::Node& head = AnyNode();
    return {{AddEdge{{tail.Id,
                      AnyPort(tail.Gui.OutputPorts()),
                      head.Id,
                      AnyPort(head.Gui.InputPorts()),
                      0,
                      {},
                      AnyPoints()},
                     {},
                     {}}}};
}

std::vector<DocumentPoint> GraphEditor::AnyPoints() const
{
    std::vector<DocumentPoint> points;
    while (_choose(3) == 1)
        points.push_back({static_cast<std::int32_t>(_choose(9)), -7});
    return points;
}

GraphChange GraphEditor::SetSomePoints() const
{
    const auto& edges = _graph.Document().Edges;
    if (edges.empty())
        return {};
    DocumentEdge edge = *std::next(edges.begin(), Position(edges.size()));
    edge.Points = AnyPoints();
    return {{SetPoints{edge}}};
}

GraphChange GraphEditor::ChangeSomeAnnotation() const
{
    DocumentAnnotation annotation;
    annotation.Kind = _choose(2) ? AnnotationKind::Frame : AnnotationKind::Note;
    annotation.Id = Compose("a", _choose(5));
    annotation.Width = static_cast<std::int32_t>(_choose(9)); // 0 is refused
    annotation.Height = 5;
    switch (_choose(4)) {
    case 0:
        return {{RemoveAnnotation{annotation.Id}}};
    case 1:
        return {{SetAnnotation{annotation}}};
    default:
        return {{AddAnnotation{annotation}}};
    }
}

GraphChange GraphEditor::CopySomeParts() const
{
    GraphParts parts = {{AnyId(), AnyId(), AnyId()}, {}};
    const auto& annotations = _graph.Document().Annotations;
    if (!annotations.empty())
        parts.Annotations.push_back(
            std::next(annotations.begin(), Position(annotations.size()))->Id);
    return CopyParts(_graph, parts, _graph);
}

GraphChange GraphEditor::RemoveSomeEdge() const
{
    const auto& edges = _graph.Document().Edges;
    if (edges.empty())
        return {};
    return {{RemoveEdge{*std::next(edges.begin(), Position(edges.size()))}}};
}
