#include "mox/program/CgProgramBuilder.h"

#include "mox/program/ProgramLimits.h"
#include "mox/program/StageLayout.h"
#include "mox/program/StageWriter.h"

namespace Mox::Host {

namespace {

/// The name of a value as a variable of the fragment program.
std::string NameOfCrossing(const ProgramGraph& graph, const ParameterTable& parameters,
                           const ProgramValue& value)
{
    const ShaderNode& shader = *graph.Nodes()[value.Node].Definition;
    return shader.Kind == ShaderNodeKind::VaryingParameter
               ? parameters.ParameterOf(value.Node).CgName
               : graph.NameOf(value);
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

    CheckProgramLimits(graph, originalNames, problems);
    const StageLayout layout(graph, problems);
    CgNames names;
    for (const EnvironmentCode& code : environment.Code) {
        for (const std::string& name : code.Provides)
            names.Take(name);
    }
    const ParameterTable parameters(graph, layout.Plan(), originalNames, names, problems);
    const FunctionTable functions(graph, names);
    if (problems.Problems().size() > problemsBefore)
        return program;

    std::map<ProgramValue, ProgramInterpolant> interpolants;
    for (const auto& [value, slot] : layout.Slots()) {
        interpolants.insert({value,
                             {NameOfCrossing(graph, parameters, value), graph.PortOf(value).Type,
                              slot.Register, slot.Component}});
    }
    const ProgramParts parts{graph,       layout.Plan(), parameters,   functions,
                             environment, names,         interpolants, options};
    program.Vertex = WriteStage(parts, Stage::Vertex);
    program.Fragment = WriteStage(parts, Stage::Fragment);
    program.Parameters = parameters.Parameters();
    for (const auto& [value, interpolant] : interpolants)
        program.Interpolants.push_back(interpolant);
    return program;
}

} // namespace Mox::Host
