#include "mox/interchange/CompleteMaterial.h"

#include "mox/document/PropertyText.h"

#include <algorithm>

namespace Mox::Host {

namespace {

using Materials::GuiPort;
using Materials::GuiPropertyKind;

std::vector<std::string> PortNames(const std::vector<GuiPort>& ports)
{
    std::vector<std::string> names;
    names.reserve(ports.size());
    for (const GuiPort& port : ports)
        names.push_back(port.Name);
    return names;
}

std::map<std::string, std::string> DefaultsOf(const PluginNode& node)
{
    std::map<std::string, std::string> defaults;
    if (!node)
        return defaults;
    for (const auto& property : node.Properties().Properties)
        defaults[property->Name] = FormatValue(*property);
    return defaults;
}

} // namespace

CompleteMaterial DescribeMaterial(const MaterialGraph& graph, const PluginSet& plugins)
{
    std::map<std::string, std::map<std::string, std::string>> defaults; // keyed by node type
    std::vector<std::pair<std::ptrdiff_t, CompleteNode>> ordered;
    for (auto entry = graph.Nodes().begin(); entry != graph.Nodes().end(); ++entry) {
        const MaterialGraph::Node& node = *entry;
        const std::string& type = graph.Document().Nodes[entry.Index()].Type;
        const auto [known, isNew] = defaults.try_emplace(type);
        if (isNew && !node.IsPlaceholder)
            known->second = DefaultsOf(plugins.CreateNode(type, node.Where));
        CompleteNode complete;
        complete.Id = node.Id;
        complete.Type = type;
        complete.Where = node.Where;
        complete.Inputs = PortNames(node.Gui.InputPorts());
        complete.Outputs = PortNames(node.Gui.OutputPorts());
        for (const auto& property : node.Gui.Properties().Properties) {
            CompleteNode::Property& value = complete.Properties[property->Name];
            value.Value = property->Kind == GuiPropertyKind::Node
                              ? graph.IdOf(property->GetNode().get())
                              : FormatValue(*property);
            const auto usual = known->second.find(property->Name);
            value.IsDefault = property == node.Gui.TypeProperty() ||
                              (usual != known->second.end() && usual->second == value.Value);
            value.IsVisible = property->Visible;
        }
        ordered.emplace_back(graph.Order().Position(entry.Index()), std::move(complete));
    }
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    CompleteMaterial material{graph.Document(), {}};
    for (auto& [position, node] : ordered)
        material.Nodes.push_back(std::move(node));
    return material;
}

} // namespace Mox::Host
