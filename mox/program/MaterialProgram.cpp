#include "mox/program/MaterialProgram.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"
#include "mox/program/CalledCode.h"
#include "mox/program/CodeCheck.h"
#include "mox/program/EnvironmentNodes.h"
#include "mox/program/ProgramPlanner.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace Mox::Host {

namespace {

/// Warns about additional output nodes.
void WarnOfSecondEnds(const MaterialGraph& graph, ProblemList& problems)
{
    std::map<std::string, std::string> firstEnds; // ids by type
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        const auto& inputs = node.Gui.InputPorts();
        const bool isEnd = node.Gui.OutputPorts().empty() &&
                           std::any_of(inputs.begin(), inputs.end(),
                                       [](const auto& port) { return port.Connected; });
        if (!isEnd || node.IsPlaceholder)
            continue;
        const auto [first, isNew] = firstEnds.emplace(node.Gui.Type(), node.Id);
        if (!isNew) {
            problems.Warn("two-ends", node.Where,
                          Materials::Compose("node \"", first->second,
                                             "\" is also an output node of this type"));
        }
    }
}

/// Returns the ids of all nodes that an output node of the material depends on, whether or not the
/// environment reads that output.
std::set<std::string> FindNodesBeforeEnds(const GeneratedShader& shader)
{
    std::vector<const ShaderNode*> open;
    for (const ShaderNodeHandle& node : shader.Graph.Nodes) {
        if (!shader.Origins.Of(*node).Port.empty())
            open.push_back(node.get());
    }
    std::set<const ShaderNode*> seen(open.begin(), open.end());
    std::set<std::string> ids;
    while (!open.empty()) {
        const ShaderNode* node = open.back();
        open.pop_back();
        ids.insert(shader.Origins.Of(*node).Node);
        for (const auto& edge : node->InEdges) {
            const ShaderNode* tail = edge.lock()->Tail.lock().get();
            if (seen.insert(tail).second)
                open.push_back(tail);
        }
    }
    return ids;
}

std::string FormatHeader(const std::string& file, const std::string& version)
{
    return MessageLine(Materials::Compose(
        "Made from ", std::filesystem::path(file).filename().string(), " by mox ", version));
}

} // namespace

void AppendWithLines(const ProblemList& found, const MaterialGraph& graph, ProblemList& problems)
{
    for (Problem problem : found.Problems()) {
        if (const auto node = graph.FindNode(problem.Where.Node))
            problem.Where = graph.Nodes()[*node].Where;
        else if (problem.Where.File.empty())
            problem.Where.File = graph.Document().File;
        problems.Add(problem);
    }
}

void CompleteShader(const MaterialGraph& graph, const Environment& environment,
                    GeneratedShader& shader, ProblemList& problems)
{
    shader.Graph.Providers.push_back(boost::make_shared<EnvironmentProvider>(environment));
    GenerateShaderGraph(graph, shader, problems);
    try {
        CompleteShaderGraph(environment, graph.Document().RenderState, shader.Graph);
    } catch (const HostError& error) {
        problems.Fail("environment", error);
    }
}

ProgramPlan PlanMaterialProgram(const MaterialGraph& graph, const Environment& environment,
                                StageCopies copies, ProblemList& problems)
{
    WarnOfSecondEnds(graph, problems);
    GeneratedShader shader;
    ProblemList generated;
    CompleteShader(graph, environment, shader, generated);
    const bool isComplete = !generated.HasErrors();
    problems.Append(generated);
    ProblemList found;
    Environment surroundings = environment;
    for (EnvironmentCode& helper : FindHelperFunctions(shader.Graph, shader.Origins, found))
        surroundings.Code.push_back(std::move(helper));
    ProgramPlan plan = PlanProgram(shader.Graph, shader.Origins, surroundings, copies, found);
    AppendWithLines(found, graph, problems);
    for (ProgramParameter& parameter : plan.Parameters) {
        if (parameter.IsBinding && parameter.Kind == ParameterKind::Sampler)
            parameter.Sampler = FindSamplerState(graph.Document(), parameter.Name);
    }
    if (!isComplete)
        return plan; // otherwise nodes read only by a failed node would be reported as dead
    if (plan.DeadNodes.empty())
        return plan;
    const std::set<std::string> alive = FindNodesBeforeEnds(shader);
    if (alive.empty()) {
        problems.Warn("no-end", Place(graph.Document().File),
                      "nothing reaches the surface: no edge leads to an output node of the "
                      "material, such as \"Surface\"");
        return plan; // this warning covers every node
    }
    for (const std::string& node : plan.DeadNodes) {
        if (!alive.contains(node)) {
            problems.Warn("dead-node", graph.Nodes()[graph.FindNode(node, {})].Where,
                          "this node does not contribute to the surface");
        }
    }
    return plan;
}

CgProgram BuildMaterialProgram(const MaterialGraph& graph, const Environment& environment,
                               const ProgramOptions& options, ProblemList& problems)
{
    ProblemList found;
    CgProgram program{
        PlanMaterialProgram(graph, environment, StageCopies::HandedOn, found), {}, {}};
    if (!found.HasErrors()) {
        program = WriteCg(std::move(program.Plan), options);
        if (!options.Version.empty())
            program.Header = FormatHeader(graph.Document().File, options.Version);
        ProblemList inCode;
        program.Code = CheckCode(program, graph.Document().File, inCode);
        AppendWithLines(inCode, graph, found);
    }
    problems.Append(found);
    return program;
}

std::vector<ProgramFile> WriteProgram(const ProgramFormat& format, const CgProgram& program,
                                      const MaterialGraph& graph, const std::filesystem::path& file,
                                      ProblemList& problems)
{
    ProblemList found;
    std::vector<ProgramFile> files = format.Write(program, file.string(), found);
    AppendWithLines(found, graph, problems);
    return files;
}

} // namespace Mox::Host
