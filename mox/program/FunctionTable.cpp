#include "mox/program/FunctionTable.h"

#include "mox/Text.h"

namespace Mox::Host {

using Materials::Compose;

FunctionTable::FunctionTable(const ProgramGraph& graph, CgNames& names)
{
    std::map<std::string, std::size_t> known; // by whole text
    for (std::size_t i = 0; i < graph.Nodes().size(); ++i) {
        const ShaderNode& shader = *graph.Nodes()[i].Shader;
        if (shader.Kind != ShaderNodeKind::Function)
            continue;
        const auto [entry, isNew] = known.try_emplace(
            FormatSignature(shader, shader.Name) + "\n" + shader.Code, _functions.size());
        if (isNew)
            _functions.push_back({names.Claim(shader.Name), &shader, {}});
        _functions[entry->second].Nodes.push_back(i);
        _indices.emplace(i, entry->second);
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
