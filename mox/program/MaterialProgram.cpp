#include "mox/program/MaterialProgram.h"

#include "mox/program/EnvironmentNodes.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace Mox::Host {

namespace {

/// Takes over what was found behind the authoring graph, where only the ids of nodes are known.
void Append(const ProblemList& found, const MaterialGraph& graph, ProblemList& problems)
{
    for (const Problem& problem : found.Problems()) {
        const auto node = graph.Store().FindNode(problem.Where.Node);
        problems.Add({problem.Level, problem.Rule,
                      node ? graph.Nodes()[*node].Where : problem.Where, problem.Message});
    }
}

} // namespace

void CompleteShader(const MaterialGraph& graph, const Environment& environment,
                    GeneratedShader& shader, ProblemList& problems)
{
    shader.Graph.Providers.push_back(boost::make_shared<EnvironmentProvider>(environment));
    GenerateShaderGraph(graph, shader, problems);
    if (problems.HasErrors())
        return;
    try {
        CompleteShaderGraph(environment, shader.Graph);
    } catch (const HostError& error) {
        problems.Fail("environment", error);
    }
}

CgProgram BuildMaterialProgram(const MaterialGraph& graph, const Environment& environment,
                               const ProgramOptions& options, ProblemList& problems)
{
    GeneratedShader shader;
    CompleteShader(graph, environment, shader, problems);
    if (problems.HasErrors())
        return {};
    ProblemList found;
    CgProgram program = BuildCgProgram(shader.Graph, shader.Origins, shader.OriginalNames,
                                       environment, options, found);
    Append(found, graph, problems);
    for (const std::string& node : program.DeadNodes) {
        problems.Warn("dead-node", graph.Nodes()[graph.FindNode(node, {})].Where,
                      "nothing of this node reaches the surface");
    }
    return program;
}

std::vector<std::string> WriteProgram(const ProgramFormat& format, const CgProgram& program,
                                      const MaterialGraph& graph, const std::filesystem::path& file,
                                      ProblemList& problems)
{
    ProblemList found;
    std::vector<std::string> texts = format.Write(program, file.string(), found);
    Append(found, graph, problems);
    return texts;
}

} // namespace Mox::Host
