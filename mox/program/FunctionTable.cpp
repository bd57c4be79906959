#include "mox/program/FunctionTable.h"

#include "mox/Text.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

namespace Mox::Host {

using Materials::Compose;

namespace {

struct FunctionHash
{
    std::size_t operator()(const ShaderNode* function) const
    {
        return std::hash<std::string>()(function->Code);
    }
};

struct SameFunction
{
    bool operator()(const ShaderNode* a, const ShaderNode* b) const
    {
        return a->Code == b->Code && a->Name == b->Name && HaveSamePorts(a->Inputs, b->Inputs) &&
               HaveSamePorts(a->Outputs, b->Outputs);
    }

private:
    static bool HaveSamePorts(const std::vector<ShaderPort>& a, const std::vector<ShaderPort>& b)
    {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                          [](const ShaderPort& left, const ShaderPort& right) {
                              return left.Name == right.Name && left.Type == right.Type;
                          });
    }
};

} // namespace

FunctionTable::FunctionTable(const ProgramGraph& graph, CgNames& names)
{
    std::unordered_map<const ShaderNode*, std::size_t, FunctionHash, SameFunction> known;
    _indices.resize(graph.Nodes().size());
    for (std::size_t i = 0; i < graph.Nodes().size(); ++i) {
        const ShaderNode& shader = *graph.Nodes()[i].Shader;
        if (shader.Kind != ShaderNodeKind::Function)
            continue;
        const auto [entry, isNew] = known.try_emplace(&shader, _functions.size());
        if (isNew)
            _functions.push_back({names.Claim(shader.Name), &shader, {}});
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
