#include "mox/program/ParameterTable.h"

#include "mox/Text.h"
#include "mox/program/RegisterRules.h"

#include <algorithm>
#include <tuple>

namespace Mox::Host {

namespace {

using Materials::Compose;

ParameterKind KindOf(const ShaderNode& node)
{
    if (node.Kind == ShaderNodeKind::VaryingParameter)
        return ParameterKind::VertexStream;
    return IsSampler(node.Type) ? ParameterKind::Sampler : ParameterKind::Uniform;
}

std::string DescribeOwner(const ProgramParameter& parameter)
{
    return parameter.IsBinding ? Compose("node \"", parameter.Node, "\"") : "the environment";
}

const char* DescribeKind(ParameterKind kind)
{
    switch (kind) {
    case ParameterKind::Uniform:
        return "uniform";
    case ParameterKind::Sampler:
        return "texture";
    case ParameterKind::VertexStream:
        return "vertex stream";
    }
    return "";
}

} // namespace

ParameterTable::ParameterTable(const ProgramGraph& graph, const StageChoice& stages, CgNames& names,
                               ProblemList& problems)
{
    Collect(graph, stages, problems);
    WarnOfEnvironmentNames(problems);
    GiveNames(names);
    GiveRegisters(graph, problems);
}

void ParameterTable::Collect(const ProgramGraph& graph, const StageChoice& stages,
                             ProblemList& problems)
{
    std::map<std::tuple<bool, bool, std::string>, std::size_t> known;
    for (std::size_t i = 0; i < graph.Nodes().size(); ++i) {
        const ProgramNode& program = graph.Nodes()[i];
        const ShaderNode& node = *program.Definition;
        if (!IsParameter(node))
            continue;
        const std::string& owner = program.Origin->Node;
        const std::string& name = NameOf(program);
        // A texture and a number with the same name are meant as one binding, so this is a
        // conflict.
        const bool isStream = node.Kind == ShaderNodeKind::VaryingParameter;
        const auto [entry, isNew] =
            known.try_emplace({isStream, !owner.empty(), name}, _parameters.size());
        if (isNew) {
            _parameters.push_back({KindOf(node), name, "", node.Type, node.Register, !owner.empty(),
                                   false, false, owner});
        }
        ProgramParameter& parameter = _parameters[entry->second];
        if (parameter.Type != node.Type) {
            problems.Fail("two-types", PlaceOf(*program.Origin),
                          Compose("parameter \"", name, "\" is ", node.Type.Format(), " here but ",
                                  parameter.Type.Format(), " in ", DescribeOwner(parameter),
                                  "; give one of them a different name"));
        }
        parameter.InVertex = parameter.InVertex || stages.InVertex(i);
        parameter.InFragment = parameter.InFragment || stages.InFragment(i);
        _indices.emplace(i, entry->second);
    }
}

void ParameterTable::WarnOfEnvironmentNames(ProblemList& problems) const
{
    std::map<std::string, const ProgramParameter*> ofEnvironment;
    for (const ProgramParameter& parameter : _parameters) {
        if (!parameter.IsBinding)
            ofEnvironment.emplace(parameter.Name, &parameter);
    }
    for (const ProgramParameter& parameter : _parameters) {
        const auto other = ofEnvironment.find(parameter.Name);
        if (!parameter.IsBinding || other == ofEnvironment.end())
            continue;
        problems.Warn("name-of-environment", Place({}, 0, parameter.Node),
                      Compose("the environment also reads a ", DescribeKind(other->second->Kind),
                              " \"", parameter.Name,
                              "\", which is a different value; use a different name here so that "
                              "hosts do not confuse the two"));
    }
}

void ParameterTable::GiveNames(CgNames& names)
{
    // Names that are valid in Cg are assigned first and unchanged; then the others get similar
    // names.
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

void ParameterTable::GiveRegisters(const ProgramGraph& graph, ProblemList& problems)
{
    RegisterRules rules(problems);
    for (const ProgramNode& node : graph.Nodes()) {
        if (node.Shader->Kind == ShaderNodeKind::CgRegisterParameter)
            rules.Enter(node);
    }
    const auto isInBoth = [](const ProgramParameter& parameter) {
        return parameter.InVertex && parameter.InFragment;
    };
    // Explicitly chosen registers come first, then parameters that need one register in both
    // stages.
    std::vector<ProgramParameter*> order;
    for (ProgramParameter& parameter : _parameters)
        order.push_back(&parameter);
    std::stable_sort(order.begin(), order.end(), [&](const auto* a, const auto* b) {
        constexpr auto none = ShaderRegisterType::RegisterUnknown;
        return std::tuple(a->Register.Type == none, !isInBoth(*a)) <
               std::tuple(b->Register.Type == none, !isInBoth(*b));
    });
    for (ProgramParameter* parameter : order)
        rules.GiveRegister(*parameter);
    rules.CheckCounts(_parameters);
}

} // namespace Mox::Host
