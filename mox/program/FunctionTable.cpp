#include "mox/program/FunctionTable.h"

#include "mox/Text.h"

#include <unordered_map>

namespace Mox::Host {

using Materials::Compose;

FunctionTable::FunctionTable(const ProgramGraph& graph, CgNames& names)
{
    std::unordered_map<const ShaderNode*, std::size_t> known;
    _indices.resize(graph.Nodes().size());
    for (std::size_t i = 0; i < graph.Nodes().size(); ++i) {
        const ShaderNode& definition = *graph.Nodes()[i].Definition;
        if (definition.Kind != ShaderNodeKind::Function)
            continue;
        const auto [entry, isNew] = known.try_emplace(&definition, _functions.size());
        if (isNew)
            _functions.push_back({names.Claim(definition.Name), &definition, {}});
        _functions[entry->second].Nodes.push_back(i);
        _indices[i] = entry->second;
    }
}

std::string FormatSignature(const ShaderNode& function, const std::string& name)
{
    std::string parameters;
    const auto append = [&](const char* direction, const ShaderPort& port) {
        parameters += Compose(parameters.empty() ? " " : ", ", direction, " ",
                              port.Type.FormatDeclaration(port.Name));
    };
    for (const ShaderPort& port : function.Inputs)
        append("in", port);
    for (const ShaderPort& port : function.Outputs)
        append("out", port);
    return Compose("void ", name, "(", parameters, parameters.empty() ? ")" : " )");
}

} // namespace Mox::Host
