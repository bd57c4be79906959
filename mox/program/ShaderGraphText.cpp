#include "mox/program/ShaderGraphText.h"

#include "mox/Text.h"
#include "mox/program/CgWriter.h"

#include <unordered_map>

namespace Mox::Host {

using Materials::Compose;

namespace {

std::string FormatFunction(const ShaderNode& node)
{
    return Compose(FormatSignature(node.Name, node.Inputs, node.Outputs), "\n{\n", node.Code,
                   "}\n");
}

} // namespace

std::string FormatShaderGraph(const ShaderGraph& graph)
{
    std::unordered_map<const ShaderNode*, std::size_t> numbers;
    std::string text = Compose("nodes: ", graph.Nodes.size(), "\n");
    for (const ShaderNodeHandle& node : graph.Nodes) {
        const std::size_t number = numbers.size() + 1;
        numbers.emplace(node.get(), number);
        text += Compose("\n[", number, "] ", node->Describe(), "\n");
        if (node->Kind == ShaderNodeKind::Function)
            text += FormatFunction(*node);
    }
    text += Compose("\nedges: ", graph.Edges.size(), "\n");
    for (const ShaderEdgeHandle& edge : graph.Edges) {
        const auto end = [&](const boost::weak_ptr<ShaderNode>& node, const std::string& port) {
            return Compose("[", numbers.at(node.lock().get()), "].", port);
        };
        text +=
            Compose(end(edge->Tail, edge->TailPort), " -> ", end(edge->Head, edge->HeadPort), "\n");
    }
    return text;
}

} // namespace Mox::Host
