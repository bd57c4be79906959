#include "mox/program/StandInNames.h"

#include "mox/Identifier.h"
#include "mox/program/CgNames.h"
#include "mox/shader/ShaderNode.h"

#include <cstddef>
#include <string_view>

namespace Mox::Host {

namespace {

/// Whether a node has a binding; false, with an error, if the node fails.
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
        standIn = names.Claim("MoxStandIn"); // unlike any parameter name that a plug-in would use
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

std::string StandInNames::OriginalOf(const std::string& name) const
{
    const auto original = _originals.find(name);
    return original == _originals.end() ? std::string() : original->second;
}

std::string StandInNames::Translate(const std::string& message) const
{
    std::string text;
    std::size_t copied = 0;
    ForEachWord(message, [&](std::string_view word, std::size_t at) {
        const auto original = _originals.find(std::string(word));
        if (original == _originals.end())
            return;
        text += message.substr(copied, at - copied) + original->second;
        copied = at + word.size();
    });
    return text + message.substr(copied);
}

} // namespace Mox::Host
