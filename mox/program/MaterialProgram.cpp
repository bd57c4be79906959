#include "mox/program/MaterialProgram.h"

#include "mox/program/EnvironmentNodes.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <unordered_map>

namespace Mox::Host {

namespace {

/// Where nodes stand in their document. What comes behind the authoring graph knows their ids only,
/// and of problems of the whole material not even the file.
class NodePlaces
{
public:
    explicit NodePlaces(const MaterialGraph& graph) : _file(graph.Store().File())
    {
        for (const MaterialGraph::Node& node : graph.Nodes())
            _places.emplace(node.Id, node.Where);
    }

    const Place& Of(const std::string& node) const { return _places.at(node); }

    void Append(const ProblemList& found, ProblemList& problems) const
    {
        for (Problem problem : found.Problems()) {
            const auto place = _places.find(problem.Where.Node);
            if (place != _places.end())
                problem.Where = place->second;
            else if (problem.Where.File.empty())
                problem.Where.File = _file;
            problems.Add(problem);
        }
    }

private:
    std::string _file;
    std::unordered_map<std::string, Place> _places;
};

} // namespace

void CompleteShader(const MaterialGraph& graph, const Environment& environment,
                    GeneratedShader& shader, ProblemList& problems)
{
    shader.Graph.Providers.push_back(boost::make_shared<EnvironmentProvider>(environment));
    GenerateShaderGraph(graph, shader, problems);
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
    ProblemList found;
    CompleteShader(graph, environment, shader, found);
    const bool isComplete = !found.HasErrors();
    problems.Append(found);
    found = {};
    CgProgram program = BuildCgProgram(shader.Graph, shader.Origins, shader.OriginalNames,
                                       environment, options, found);
    const NodePlaces places(graph);
    places.Append(found, problems);
    if (!isComplete)
        return program; // what only a failed node reads is not dead
    for (const std::string& node : program.DeadNodes)
        problems.Warn("dead-node", places.Of(node), "nothing of this node reaches the surface");
    return program;
}

std::vector<std::string> WriteProgram(const ProgramFormat& format, const CgProgram& program,
                                      const MaterialGraph& graph, const std::filesystem::path& file,
                                      ProblemList& problems)
{
    ProblemList found;
    std::vector<std::string> texts = format.Write(program, file.string(), found);
    NodePlaces(graph).Append(found, problems);
    return texts;
}

} // namespace Mox::Host
