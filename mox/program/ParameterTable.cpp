#include "mox/program/ParameterTable.h"

#include "mox/Text.h"

#include <algorithm>
#include <tuple>

namespace Mox::Host {

namespace {

using Materials::Compose;

bool IsParameter(const ShaderNode& node)
{
    return node.Kind == ShaderNodeKind::UniformParameter ||
           node.Kind == ShaderNodeKind::VaryingParameter;
}

bool IsSampler(const ShaderType& type)
{
    return type.Component >= ComponentType::Sampler1D &&
           type.Component <= ComponentType::SamplerRect;
}

ParameterKind KindOf(const ShaderNode& node)
{
    if (node.Kind == ShaderNodeKind::VaryingParameter)
        return ParameterKind::VertexStream;
    return IsSampler(node.Type) ? ParameterKind::Sampler : ParameterKind::Uniform;
}

std::string DescribeOwner(const std::string& node)
{
    return node.empty() ? "the environment" : Compose("node \"", node, "\"");
}

/// Counts what takes registers of one class and reports when there are too few.
class RegisterCount
{
public:
    RegisterCount(ShaderRegisterType type, const char* what) : _type(type), _what(what) {}

    /// @returns the first register taken
    std::int32_t Take(const ProgramParameter& parameter, std::int32_t count = 1)
    {
        _users += Compose(_users.empty() ? "" : ", ", "\"", parameter.Name, "\"");
        const std::int32_t first = _taken;
        _taken += count;
        return first;
    }

    void Check(ProblemList& problems) const
    {
        const std::int32_t limit = GetRegisterInfo(_type).Count;
        if (_taken > limit) {
            problems.Fail("too-many-registers", {},
                          Compose(_what, " need ", _taken, " registers, but there are ", limit,
                                  ": ", _users));
        }
    }

private:
    ShaderRegisterType _type;
    const char* _what;
    std::int32_t _taken = 0;
    std::string _users;
};

std::int32_t ConstantRegisters(const ShaderType& type)
{
    return std::max(type.Rows, 1) * std::max(type.ArrayLength, 1);
}

} // namespace

ParameterTable::ParameterTable(const ProgramGraph& graph, const StagePlan& plan,
                               const std::map<std::string, std::string>& originalNames,
                               CgNames& names, ProblemList& problems)
{
    Collect(graph, plan, originalNames, problems);
    GiveNames(names);
    GiveRegisters(problems);
}

void ParameterTable::Collect(const ProgramGraph& graph, const StagePlan& plan,
                             const std::map<std::string, std::string>& originalNames,
                             ProblemList& problems)
{
    std::map<std::tuple<ParameterKind, bool, std::string>, std::size_t> known;
    std::vector<std::string> owners;
    for (std::size_t i = 0; i < graph.Nodes().size(); ++i) {
        const ShaderNode& node = *graph.Nodes()[i].Definition;
        if (!IsParameter(node))
            continue;
        const std::string& owner = graph.Nodes()[i].Origin->Node;
        const auto original = originalNames.find(node.Name);
        const std::string& name = original == originalNames.end() ? node.Name : original->second;
        // Whoever gives one name to a texture and to a number means one binding, and is told so.
        const ParameterKind keyKind = node.Kind == ShaderNodeKind::VaryingParameter
                                          ? ParameterKind::VertexStream
                                          : ParameterKind::Uniform;
        const auto [entry, isNew] =
            known.try_emplace({keyKind, !owner.empty(), name}, _parameters.size());
        if (isNew) {
            _parameters.push_back(
                {KindOf(node), name, "", node.Type, node.Register, !owner.empty(), false, false});
            owners.push_back(owner);
        }
        ProgramParameter& parameter = _parameters[entry->second];
        if (parameter.Type != node.Type) {
            problems.Fail("two-types", PlaceOf(*graph.Nodes()[i].Origin),
                          Compose("parameter \"", name, "\" is ", node.Type.Format(), " here and ",
                                  parameter.Type.Format(), " at ",
                                  DescribeOwner(owners[entry->second])));
        }
        parameter.InVertex = parameter.InVertex || plan.InVertex(i);
        parameter.InFragment = parameter.InFragment || plan.InFragment(i);
        _indices.emplace(i, entry->second);
    }
}

void ParameterTable::GiveNames(CgNames& names)
{
    // Whose name is good keeps it; only then do others take what is near to theirs.
    const auto isGood = [](const ProgramParameter& parameter) {
        return ToSafeCgName(parameter.Name) == parameter.Name;
    };
    std::vector<ProgramParameter*> order;
    for (ProgramParameter& parameter : _parameters)
        order.push_back(&parameter);
    std::stable_sort(order.begin(), order.end(), [&](const auto* a, const auto* b) {
        return std::tuple(!isGood(*a), !a->IsBinding, a->Name) <
               std::tuple(!isGood(*b), !b->IsBinding, b->Name);
    });
    for (ProgramParameter* parameter : order)
        parameter->CgName = names.Claim(parameter->Name);
}

void ParameterTable::GiveRegisters(ProblemList& problems)
{
    RegisterCount streams(ShaderRegisterType::VertexAttribute, "vertex streams");
    RegisterCount vertexSamplers(ShaderRegisterType::VertexTextureUnit,
                                 "textures of the vertex program");
    RegisterCount samplers(ShaderRegisterType::FragmentTextureUnit,
                           "textures of the fragment program");
    RegisterCount constants(ShaderRegisterType::VertexConstant, "constants of the vertex program");
    for (ProgramParameter& parameter : _parameters) {
        switch (parameter.Kind) {
        case ParameterKind::VertexStream:
            parameter.Register = {ShaderRegisterType::VertexAttribute, streams.Take(parameter)};
            break;
        case ParameterKind::Sampler:
            if (parameter.InVertex) {
                parameter.Register = {ShaderRegisterType::VertexTextureUnit,
                                      vertexSamplers.Take(parameter)};
            }
            if (parameter.InFragment) {
                parameter.Register = {ShaderRegisterType::FragmentTextureUnit,
                                      samplers.Take(parameter)};
            }
            break;
        case ParameterKind::Uniform:
            if (parameter.InVertex)
                constants.Take(parameter, ConstantRegisters(parameter.Type));
            break;
        }
    }
    for (const RegisterCount* count : {&streams, &vertexSamplers, &samplers, &constants})
        count->Check(problems);
}

} // namespace Mox::Host
