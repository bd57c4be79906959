#include "mox/program/StandInNames.h"

#include "mox/program/CgNames.h"
#include "mox/shader/ShaderNode.h"

namespace Mox::Host {

namespace {

/// A node that fails is reported and keeps its name.
bool HasBinding(const MaterialGraph::Node& node, ProblemList& problems)
{
    try {
        return node.Gui.HasBinding(node.Where);
    } catch (const HostError& error) {
        problems.Fail("node-failed", error);
        return false;
    }
}

} // namespace

StandInNames::StandInNames(const MaterialGraph& graph, ProblemList& problems)
{
    CgNames names;
    std::map<std::string, std::string> standIns;
    std::vector<PluginNode> nodes;
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        if (ShaderNode::IsValidCgName(node.Gui.Name()))
            names.Take(node.Gui.Name());
        else if (HasBinding(node, problems))
            nodes.push_back(node.Gui);
    }
    for (const auto& node : nodes)
        standIns.emplace(node.Name(), "");
    for (auto& [name, standIn] : standIns) {
        standIn = names.Claim(name);
        _originals.emplace(standIn, name);
    }
    _renamed.reserve(nodes.size());
    for (const auto& node : nodes) {
        _renamed.emplace_back(node, node.Name());
        node.NameProperty()->SetString(standIns.at(node.Name()));
    }
}

StandInNames::~StandInNames()
{
    // Swapping back cannot fail.
    for (auto& [node, name] : _renamed)
        node.NameProperty()->Text.swap(name);
}

std::string StandInNames::Translate(std::string message) const
{
    for (const auto& [standIn, name] : _originals) {
        const std::string quoted = "\"" + standIn + "\"";
        for (std::size_t at = message.find(quoted); at != std::string::npos;
             at = message.find(quoted, at + name.size()))
            message.replace(at + 1, standIn.size(), name);
    }
    return message;
}

} // namespace Mox::Host
