#include "mox/program/MaterialProgram.h"

#include "mox/program/EnvironmentNodes.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <unordered_map>

namespace Mox::Host {

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
    // The shader graph knows nodes by their ids only.
    std::unordered_map<std::string, Place> places;
    for (const MaterialGraph::Node& node : graph.Nodes())
        places.emplace(node.Id, node.Where);
    for (const Problem& problem : found.Problems()) {
        const auto place = places.find(problem.Where.Node);
        problems.Fail(problem.Rule, place == places.end() ? problem.Where : place->second,
                      problem.Message);
    }
    for (const std::string& node : program.DeadNodes)
        problems.Warn("dead-node", places.at(node), "nothing of this node reaches the surface");
    return program;
}

} // namespace Mox::Host
