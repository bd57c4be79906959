#include "mox/program/StandInNames.h"

#include "mox/program/CgNames.h"
#include "mox/shader/ShaderNode.h"

namespace Mox::Host {

StandInNames::StandInNames(const MaterialGraph& graph)
{
    CgNames names;
    std::map<std::string, std::string> standIns;
    std::vector<boost::shared_ptr<Materials::GuiNode>> nodes;
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        if (ShaderNode::IsValidCgName(node.Gui->GetName()))
            names.Take(node.Gui->GetName());
        else if (node.Gui->HasBinding())
            nodes.push_back(node.Gui);
    }
    for (const auto& node : nodes)
        standIns.emplace(node->GetName(), "");
    for (auto& [name, standIn] : standIns) {
        standIn = names.Claim(name);
        _originals.emplace(standIn, name);
    }
    _renamed.reserve(nodes.size());
    for (const auto& node : nodes) {
        _renamed.emplace_back(node, node->GetName());
        node->SetName(standIns.at(node->GetName()));
    }
}

StandInNames::~StandInNames()
{
    // Swapping back cannot fail.
    for (auto& [node, name] : _renamed)
        node->Name->Text.swap(name);
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
