#include "mox/program/ProgramPlanner.h"

#include "mox/program/CalledCode.h"
#include "mox/program/CgNames.h"
#include "mox/program/CrossingLayout.h"
#include "mox/program/ParameterTable.h"
#include "mox/program/ProgramLimits.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace Mox::Host {

namespace {

using Source = PlanOperand::Source;

class ProgramPlanner
{
public:
    ProgramPlanner(const ProgramGraph& graph, const CrossingLayout& layout,
                   const Environment& environment, ProblemList& problems)
        : _graph(graph), _layout(layout), _names(MakeNames(environment)),
          _parameters(graph, layout.Stages(), _names, problems)
    {}

    /// May be called only once, and only if there are no problems.
    ProgramPlan Plan(const Environment& environment)
    {
        _plan.DeadNodes = _graph.DeadNodes();
        _plan.Parameters = _parameters.Parameters();
        _plan.EnvironmentUniforms = environment.Uniforms;
        for (const EnvironmentCode& code : environment.Code) {
            _plan.Code.push_back(code.Text);
            _plan.TakenNames.insert(_plan.TakenNames.end(), code.Provides.begin(),
                                    code.Provides.end());
        }
        CollectFunctions();
        for (const auto& [value, pieces] : _layout.Pieces()) {
            _crossings.emplace(value, _plan.Crossings.size());
            _plan.Crossings.push_back({CrossingName(value), _graph.PortOf(value).Type, {}, pieces});
        }
        PlanStage(ProgramStage::Vertex, environment);
        PlanStage(ProgramStage::Fragment, environment);
        return std::move(_plan);
    }

private:
    static CgNames MakeNames(const Environment& environment)
    {
        CgNames names;
        for (const EnvironmentCode& code : environment.Code) {
            for (const std::string& name : code.Provides)
                names.Take(name);
        }
        return names;
    }

    std::string CrossingName(const ProgramValue& value) const
    {
        return IsParameter(*_graph.Nodes()[value.Node].Definition)
                   ? _plan.Parameters[_parameters.IndexOf(value.Node)].CgName
                   : _graph.NameOf(value);
    }

    /// Adds one function for each definition, in the order of the first calls.
    void CollectFunctions()
    {
        std::map<const ShaderNode*, std::size_t> known;
        _functions.resize(_graph.Nodes().size());
        for (std::size_t i = 0; i < _graph.Nodes().size(); ++i) {
            const ProgramNode& node = _graph.Nodes()[i];
            const ShaderNode& shader = *node.Definition;
            if (shader.Kind != ShaderNodeKind::Function)
                continue;
            const auto [entry, isNew] = known.try_emplace(&shader, _plan.Functions.size());
            if (isNew) {
                _plan.Functions.push_back({shader.Name, _names.Claim(shader.Name), shader.Inputs,
                                           shader.Outputs, shader.Code, node.Origin->Node,
                                           node.Origin->Type});
            }
            _functions[i] = entry->second;
        }
    }

    bool RunsIn(std::size_t node, ProgramStage stage) const
    {
        return stage == ProgramStage::Vertex ? _layout.Stages().InVertex(node)
                                             : _layout.Stages().InFragment(node);
    }

    void PlanStage(ProgramStage stage, const Environment& environment)
    {
        _results.assign(_graph.ValueCount(), std::nullopt);
        _calls.clear();
        for (std::size_t i = 0; i < _graph.Nodes().size(); ++i) {
            if (RunsIn(i, stage))
                PlanNode(i, stage);
        }
        if (stage == ProgramStage::Vertex) {
            for (const auto& [value, index] : _crossings)
                _plan.Crossings[index].Value = OperandOf(value, stage);
        }
        CollectUses(stage);
        CollectCode(stage, environment);
    }

    void PlanNode(std::size_t index, ProgramStage stage)
    {
        const ProgramNode& node = _graph.Nodes()[index];
        const ShaderNode& shader = *node.Definition;
        PlannedStage& planned = _plan.StageOf(stage);
        if (shader.Kind == ShaderNodeKind::Function) {
            PlanCall(index, stage);
        } else if (shader.Kind == ShaderNodeKind::CgRegisterParameter) {
            const PlannedRegister place{shader.Register, shader.Type, shader.Name};
            if (shader.Register.IsWritable()) {
                planned.Outputs.push_back({place, OperandOf(node.Inputs.front(), stage)});
                return;
            }
            const auto known =
                std::ranges::find(planned.Inputs, place.Register, &PlannedRegister::Register);
            _results[_graph.NumberOf({index, 0})] = PlanOperand{
                Source::Register, static_cast<std::size_t>(known - planned.Inputs.begin())};
            if (known == planned.Inputs.end())
                planned.Inputs.push_back(place);
        }
    }

    /// Plans the call of a node; calls of the same function with the same arguments are merged.
    void PlanCall(std::size_t index, ProgramStage stage)
    {
        const ProgramNode& node = _graph.Nodes()[index];
        PlannedStage& planned = _plan.StageOf(stage);
        PlannedCall call{_functions[index], {}, {}, node.Origin->Node};
        for (const ProgramValue& input : node.Inputs)
            call.Arguments.push_back(OperandOf(input, stage));
        const std::size_t outputs = node.Definition->Outputs.size();
        const auto [known, isNew] =
            _calls.try_emplace({call.Function, call.Arguments}, planned.Calls.size());
        for (std::size_t port = 0; port < outputs; ++port) {
            _results[_graph.NumberOf({index, port})] =
                PlanOperand{Source::Result, known->second, port};
            call.ResultNames.push_back(_graph.NameOf({index, port}));
        }
        if (isNew)
            planned.Calls.push_back(std::move(call));
    }

    PlanOperand OperandOf(const ProgramValue& wanted, ProgramStage stage) const
    {
        const auto& stages = _layout.Stages();
        const bool isFragment = stage == ProgramStage::Fragment;
        if (const auto crossing = isFragment ? stages.CrossingOf(wanted) : std::nullopt)
            return {Source::Crossing, _crossings.at(*crossing)};
        const ProgramValue value = isFragment ? wanted : stages.SourceOf(wanted);
        const std::optional<PlanOperand>& result = _results[_graph.NumberOf(value)];
        return result ? *result : PlanOperand{Source::Parameter, _parameters.IndexOf(value.Node)};
    }

    void CollectUses(ProgramStage stage)
    {
        std::map<std::size_t, FunctionUse> uses;
        std::set<std::pair<std::size_t, std::string_view>> seen;
        for (std::size_t i = 0; i < _graph.Nodes().size(); ++i) {
            const ProgramNode& node = _graph.Nodes()[i];
            if (node.Definition->Kind != ShaderNodeKind::Function || !RunsIn(i, stage))
                continue;
            FunctionUse& use =
                uses.try_emplace(_functions[i], FunctionUse{_functions[i], {}}).first->second;
            if (seen.emplace(_functions[i], node.Origin->Node).second)
                use.Nodes.push_back(node.Origin->Node);
        }
        for (auto& [function, use] : uses)
            _plan.StageOf(stage).Functions.push_back(std::move(use));
    }

    /// Collects the environment code that the functions of the stage call, directly or indirectly.
    void CollectCode(ProgramStage stage, const Environment& environment)
    {
        std::vector<std::string_view> bodies;
        for (const FunctionUse& use : _plan.StageOf(stage).Functions)
            bodies.push_back(_plan.Functions[use.Function].Code);
        const std::set<std::size_t> needed = FindCalledCode(environment.Code, bodies);
        _plan.StageOf(stage).Code.assign(needed.begin(), needed.end());
    }

    const ProgramGraph& _graph;
    const CrossingLayout& _layout;
    CgNames _names;
    ParameterTable _parameters;
    ProgramPlan _plan;
    std::vector<std::size_t> _functions;              ///< index in the plan, by node
    std::map<ProgramValue, std::size_t> _crossings;   ///< index in the plan
    std::vector<std::optional<PlanOperand>> _results; ///< by value number, in the current stage
    std::map<std::pair<std::size_t, std::vector<PlanOperand>>, std::size_t>
        _calls; ///< of the current stage, by what they compute
};

} // namespace

ProgramPlan PlanProgram(const ShaderGraph& shaderGraph, const ShaderOrigins& origins,
                        const Environment& environment, StageCopies copies, ProblemList& problems)
{
    ProblemList found;
    ProgramPlan plan;
    const ProgramGraph graph(shaderGraph, origins, found);
    plan.DeadNodes = graph.DeadNodes();
    if (!found.HasErrors()) {
        CheckProgramLimits(graph, found);
        const CrossingLayout layout(graph, copies, found);
        ProgramPlanner planner(graph, layout, environment, found);
        if (!found.HasErrors())
            plan = planner.Plan(environment);
    }
    problems.Append(found);
    return plan;
}

} // namespace Mox::Host
