#include "mox/program/CgProgramBuilder.h"

#include "mox/Text.h"
#include "mox/program/InterpolantPacking.h"
#include "mox/program/StageWriter.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace Mox::Host {

namespace {

using Materials::Compose;

using Interpolants = std::map<ProgramValue, ProgramInterpolant>;

/// What people know a value by: the parameter's name, or node and port.
std::string DescribeValue(const ProgramGraph& graph, const ShaderOrigins& origins,
                          const ProgramValue& value)
{
    const ShaderNode& shader = *graph.Nodes()[value.Node].Shader;
    const std::string& node = origins.Of(shader).Node;
    if (shader.Kind != ShaderNodeKind::Function)
        return Compose("\"", shader.Name, "\"");
    if (node.empty())
        return Compose("\"", graph.NameOf(value), "\" of the environment");
    return Compose("\"", graph.PortOf(value).Name, "\" of node \"", node, "\"");
}

/// The name of a value as a variable of the fragment program.
std::string NameOfCrossing(const ProgramGraph& graph, const ParameterTable& parameters,
                           const ProgramValue& value)
{
    const ShaderNode& shader = *graph.Nodes()[value.Node].Shader;
    return shader.Kind == ShaderNodeKind::VaryingParameter
               ? parameters.ParameterOf(value.Node).CgName
               : graph.NameOf(value);
}

bool CanBeInterpolated(const ShaderType& type)
{
    constexpr std::int32_t widest = 4;
    const bool isReal = type.Component == ComponentType::Float ||
                        type.Component == ComponentType::Half ||
                        type.Component == ComponentType::Fixed;
    return isReal && type.Rows == 1 && type.ArrayLength == 1 && type.Columns >= 1 &&
           type.Columns <= widest;
}

/// Lays the crossing values into registers.
/// @returns nothing if they do not fit
std::optional<Interpolants> LayOut(const ProgramGraph& graph, const StagePlan& plan)
{
    const std::int32_t limit = GetRegisterInfo(ShaderRegisterType::FragmentTexCoord).Count;
    constexpr std::int32_t registerWidth = 4;
    std::vector<std::int32_t> widths;
    for (const ProgramValue& value : plan.Crossing())
        widths.push_back(graph.PortOf(value).Type.Columns);
    if (std::accumulate(widths.begin(), widths.end(), std::int64_t(0)) > limit * registerWidth)
        return std::nullopt;
    const std::vector<InterpolantSlot> slots = PackInterpolants(widths);
    Interpolants interpolants;
    auto slot = slots.begin();
    for (const ProgramValue& value : plan.Crossing()) {
        if (slot->Register >= limit)
            return std::nullopt;
        interpolants.insert(
            {value, {"", graph.PortOf(value).Type, slot->Register, slot->Component}});
        ++slot;
    }
    return interpolants;
}

void ReportCrowd(const ProgramGraph& graph, const ShaderOrigins& origins, const StagePlan& plan,
                 ProblemList& problems)
{
    std::string values;
    for (const ProgramValue& value : plan.Crossing()) {
        values += Compose(values.empty() ? "" : ", ", DescribeValue(graph, origins, value), " (",
                          graph.PortOf(value).Type.Format(), ")");
    }
    problems.Fail(
        "too-many-interpolants", {},
        Compose("what the vertex program hands to the fragment program does not fit into ",
                GetRegisterInfo(ShaderRegisterType::FragmentTexCoord).Count,
                " registers of four components: ", values));
}

void ReportWhatCannotCross(const ProgramGraph& graph, const ShaderOrigins& origins,
                           const StagePlan& plan, ProblemList& problems)
{
    for (const ProgramValue& value : plan.Crossing()) {
        const ShaderType& type = graph.PortOf(value).Type;
        if (CanBeInterpolated(type))
            continue;
        problems.Fail("cannot-cross", PlaceOf(*graph.Nodes()[value.Node].Shader, origins),
                      Compose(DescribeValue(graph, origins, value), " is ", type.Format(),
                              ", which cannot be handed from the vertex to the fragment program"));
    }
}

} // namespace

CgProgram BuildCgProgram(const ShaderGraph& shaderGraph, const ShaderOrigins& origins,
                         const std::map<std::string, std::string>& originalNames,
                         const Environment& environment, const ProgramOptions& options,
                         ProblemList& problems)
{
    const std::size_t problemsBefore = problems.Problems().size();
    CgProgram program;
    const ProgramGraph graph(shaderGraph, origins, problems);
    program.DeadNodes = graph.DeadNodes();
    if (problems.Problems().size() > problemsBefore)
        return program;

    std::optional<StagePlan> plan(std::in_place, graph, origins, StagePlan::Copies::HandedOn,
                                  problems);
    ReportWhatCannotCross(graph, origins, *plan, problems);
    std::optional<Interpolants> interpolants;
    if (problems.Problems().size() == problemsBefore) {
        interpolants = LayOut(graph, *plan);
        if (!interpolants) {
            plan.emplace(graph, origins, StagePlan::Copies::MadeTwice, problems);
            interpolants = LayOut(graph, *plan);
        }
        if (!interpolants)
            ReportCrowd(graph, origins, *plan, problems);
    }

    CgNames names;
    for (const EnvironmentCode& code : environment.Code) {
        for (const std::string& name : code.Provides)
            names.Take(name);
    }
    const ParameterTable parameters(graph, *plan, origins, originalNames, names, problems);
    const FunctionTable functions(graph, names);
    if (problems.Problems().size() > problemsBefore)
        return program;

    for (auto& [value, interpolant] : *interpolants)
        interpolant.Name = NameOfCrossing(graph, parameters, value);
    const ProgramParts parts{graph,   *plan, parameters,    functions, environment,
                             origins, names, *interpolants, options};
    program.Vertex = WriteStage(parts, Stage::Vertex);
    program.Fragment = WriteStage(parts, Stage::Fragment);
    program.Parameters = parameters.Parameters();
    for (const auto& [value, interpolant] : *interpolants)
        program.Interpolants.push_back(interpolant);
    return program;
}

} // namespace Mox::Host
