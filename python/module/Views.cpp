#include "Views.h"

#include "Edit.h"
#include "Errors.h"
#include "mox/authoring/GuiPort.h"
#include "mox/graph/HostValues.h"
#include "mox/host/HostError.h"
#include "mox/layout/NodeShape.h"

namespace Mox::Python {

namespace {

using Materials::GuiPort;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

Value ValueOf(const Host::MaterialGraph& graph, const GuiProperty& property)
{
    const std::string id = graph.IdOf(property.Node.get());
    return property.Kind == GuiPropertyKind::Node && !id.empty() ? id : ReadValue(property);
}

/// Finds a port by name. An input takes precedence over an output with the same name.
/// @returns null if there is no such port
const GuiPort* FindPort(const Host::PluginNode& node, const std::string& name, bool& isInput)
{
    for (const bool inputs : {true, false}) {
        isInput = inputs;
        for (const GuiPort& port : inputs ? node.InputPorts() : node.OutputPorts()) {
            if (port.Name == name)
                return &port;
        }
    }
    return nullptr;
}

/// @throws HostError if a node has set an invalid precision
PortState StateOf(const GuiPort& port, bool isInput, const Host::Place& where)
{
    PortState state;
    state.Label = port.Label.empty() ? port.Name : port.Label;
    state.IsInput = isInput;
    state.IsConnected = port.Connected;
    state.HasConflict = port.CountConflict;
    if (port.CountKnown)
        state.Components = port.ComponentCount;
    if (port.PrecisionKnown)
        state.Precision =
            Host::CallLibrary(where, [&] { return GetComponentName(port.Precision); });
    return state;
}

float ReadCoordinate(const Host::PluginNode& node, const char* name)
{
    const auto& index = node.Properties().Index;
    const auto property = index.find(name);
    return property == index.end() ? 0.0f : property->second->Floats[0];
}

} // namespace

std::string NodeView::Type() const
{
    return Owner->UseNode(Id, [](const auto& graph, std::size_t number) {
        return graph.Document().Nodes[number].Type;
    });
}

std::string NodeView::Title() const
{
    return Owner->UseNode(Id, [](const auto& graph, std::size_t number) {
        return Host::TitleOf(graph.Nodes()[number]);
    });
}

int NodeView::Line() const
{
    return Owner->UseNode(Id, [](const auto& graph, std::size_t number) {
        return graph.Document().Nodes[number].Line;
    });
}

bool NodeView::IsPlaceholder() const
{
    return Owner->UseNode(Id, [](const auto& graph, std::size_t number) {
        return graph.Nodes()[number].IsPlaceholder;
    });
}

std::vector<std::pair<std::string, Value>> NodeView::Values() const
{
    return Owner->UseNode(Id, [](const auto& graph, std::size_t number) {
        std::vector<std::pair<std::string, Value>> values;
        for (const auto& property : graph.Nodes()[number].Gui.Properties().Properties)
            values.emplace_back(property->Name, ValueOf(graph, *property));
        return values;
    });
}

std::pair<float, float> NodeView::Position() const
{
    return Owner->UseNode(Id, [](const auto& graph, std::size_t number) {
        const Host::PluginNode& node = graph.Nodes()[number].Gui;
        return std::pair(ReadCoordinate(node, Host::positionX),
                         ReadCoordinate(node, Host::positionY));
    });
}

PortState PortView::State() const
{
    return Node.Owner->UseNode(Node.Id, [this](const auto& graph, std::size_t number) {
        bool isInput = false;
        const GuiPort* port = FindPort(graph.Nodes()[number].Gui, Name, isInput);
        if (!port) {
            throw StaleView(Host::Place(graph.Document().File, 0, Node.Id, Name),
                            "the node has no such port");
        }
        return StateOf(*port, isInput, graph.Nodes()[number].Where);
    });
}

std::optional<PortView> PortView::Source() const
{
    return Node.Owner->UseNode(Node.Id, [this](const auto& graph, std::size_t number) {
        std::optional<PortView> source;
        for (const std::size_t link : graph.Links().In(number)) {
            const Host::DocumentEdge& edge = graph.Document().Edges[link];
            if (edge.HeadPort == Name)
                source = {{Node.Owner, edge.Tail}, edge.TailPort};
        }
        return source;
    });
}

std::vector<PortView> PortView::Readers() const
{
    return Node.Owner->UseNode(Node.Id, [this](const auto& graph, std::size_t number) {
        std::vector<PortView> readers;
        for (const std::size_t link : graph.Links().Out(number)) {
            const Host::DocumentEdge& edge = graph.Document().Edges[link];
            if (edge.TailPort == Name)
                readers.push_back({{Node.Owner, edge.Head}, edge.HeadPort});
        }
        return readers;
    });
}

std::vector<NodeView> NodesOf(Material& material)
{
    return material.Use([&](const auto& graph) {
        std::vector<NodeView> nodes;
        for (const Host::GraphNode& node : graph.Nodes())
            nodes.push_back({material.shared_from_this(), node.Id});
        return nodes;
    });
}

std::vector<EdgeView> EdgesOf(Material& material)
{
    return material.Use([&](const auto& graph) {
        const auto owner = material.shared_from_this();
        std::vector<EdgeView> edges;
        for (const Host::DocumentEdge& edge : graph.Document().Edges) {
            edges.push_back(
                {{{owner, edge.Tail}, edge.TailPort}, {{owner, edge.Head}, edge.HeadPort}});
        }
        return edges;
    });
}

std::vector<PortView> PortsOf(const NodeView& node, bool inputs)
{
    return node.Owner->UseNode(node.Id, [&](const auto& graph, std::size_t number) {
        const Host::PluginNode& gui = graph.Nodes()[number].Gui;
        std::vector<PortView> ports;
        for (const GuiPort& port : inputs ? gui.InputPorts() : gui.OutputPorts())
            ports.push_back({{node.Owner, node.Id}, port.Name});
        return ports;
    });
}

std::vector<Host::RightName> PortNamesOf(const NodeView& node)
{
    return node.Owner->UseNode(node.Id, [](const auto& graph, std::size_t number) {
        const Host::PluginNode& gui = graph.Nodes()[number].Gui;
        std::vector<Host::RightName> names;
        for (const auto* ports : {&gui.InputPorts(), &gui.OutputPorts()}) {
            for (const GuiPort& port : *ports)
                names.push_back({port.Name, port.Label});
        }
        return names;
    });
}

bool HasPort(const NodeView& node, const std::string& name)
{
    if (node.Draft && node.Draft->IsOpen())
        return true;
    return node.Owner->UseNode(node.Id, [&](const auto& graph, std::size_t number) {
        bool isInput = false;
        return graph.Nodes()[number].IsPlaceholder ||
               FindPort(graph.Nodes()[number].Gui, name, isInput) != nullptr;
    });
}

} // namespace Mox::Python
