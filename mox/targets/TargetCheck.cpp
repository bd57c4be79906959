#include "mox/targets/TargetCheck.h"

#include "mox/Text.h"

#include <algorithm>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Returns whether the targets support a type of register; they all support the same types.
bool HasRegister(ShaderRegisterType type)
{
    switch (type) {
    case ShaderRegisterType::RegisterUnknown:
    case ShaderRegisterType::VertexAttribute:
    case ShaderRegisterType::VertexConstant:
    case ShaderRegisterType::VertexTextureUnit:
    case ShaderRegisterType::VertexPosition:
    case ShaderRegisterType::VertexTexCoord:
    case ShaderRegisterType::FragmentTexCoord:
    case ShaderRegisterType::FragmentTextureUnit:
    case ShaderRegisterType::FragmentColorOut:
        return true;
    case ShaderRegisterType::VertexPointSize:
    case ShaderRegisterType::VertexFog:
    case ShaderRegisterType::VertexColor:
    case ShaderRegisterType::VertexBackColor:
    case ShaderRegisterType::FragmentPosition:
    case ShaderRegisterType::FragmentColorIn:
    case ShaderRegisterType::FragmentFace:
    case ShaderRegisterType::FragmentFog:
    case ShaderRegisterType::FragmentDepth:
        break;
    }
    return false;
}

/// Returns the node that reads a register, based on its call in the stage; empty for the
/// environment.
std::string NodeOfInput(const PlannedStage& stage, std::size_t input)
{
    for (const PlannedCall& call : stage.Calls) {
        for (const PlanOperand& argument : call.Arguments) {
            if (argument.From == PlanOperand::Source::Register && argument.Index == input)
                return call.Node;
        }
    }
    return {};
}

std::string NodeOfOutput(const PlannedStage& stage, const PlannedOutput& output)
{
    return output.Value.From == PlanOperand::Source::Result ? stage.Calls[output.Value.Index].Node
                                                            : std::string();
}

/// In Cg, a fragment program may read a register that the vertex program has not written, or has
/// written as a different type; other languages do not allow this.
void CheckHandedOver(const ProgramPlan& plan, const std::string& file, ProblemList& problems)
{
    const PlannedStage& fragment = plan.StageOf(ProgramStage::Fragment);
    const std::vector<PlannedOutput>& outputs = plan.StageOf(ProgramStage::Vertex).Outputs;
    for (std::size_t i = 0; i < fragment.Inputs.size(); ++i) {
        const PlannedRegister& input = fragment.Inputs[i];
        if (input.Register.Type != ShaderRegisterType::FragmentTexCoord)
            continue;
        const auto writes = [&](const PlannedOutput& output) {
            return output.Target.Register.Type == ShaderRegisterType::VertexTexCoord &&
                   output.Target.Register.Index == input.Register.Index;
        };
        const auto output = std::find_if(outputs.begin(), outputs.end(), writes);
        if (output != outputs.end() && output->Target.Type == input.Type)
            continue;
        problems.Fail("target", Place(file, 0, NodeOfInput(fragment, i)),
                      Compose("the register ", input.Register.FormatRegister(), " is read as ",
                              input.Type.Format(), ", but ",
                              output == outputs.end()
                                  ? "nothing writes it"
                                  : "it is written as " + output->Target.Type.Format(),
                              ", which only Cg allows"));
    }
}

} // namespace

void CheckTargets(const ProgramPlan& plan, const std::vector<CompileTarget>& targets,
                  const std::string& file, ProblemList& problems)
{
    if (targets.empty())
        return;
    std::string names;
    for (const CompileTarget target : targets)
        names += Compose(names.empty() ? "" : ", ", GetTargetName(target));
    const auto refuse = [&](const std::string& node, const std::string& what) {
        problems.Fail("target", Place(file, 0, node),
                      Compose(what, " has no counterpart in ", names));
    };
    for (const PlannedStage& stage : plan.Stages) {
        const auto checkRegister = [&](const PlannedRegister& place, const std::string& node) {
            if (!HasRegister(place.Register.Type))
                refuse(node, Compose("the register ", place.Register.FormatRegister()));
        };
        for (std::size_t i = 0; i < stage.Inputs.size(); ++i)
            checkRegister(stage.Inputs[i], NodeOfInput(stage, i));
        for (const PlannedOutput& output : stage.Outputs)
            checkRegister(output.Target, NodeOfOutput(stage, output));
    }
    CheckHandedOver(plan, file, problems);
    for (const ProgramParameter& parameter : plan.Parameters) {
        if (parameter.Type.Component == ComponentType::SamplerRect)
            refuse(parameter.Node,
                   Compose("the type ", parameter.Type.Format(), " of \"", parameter.Name, "\""));
    }
}

std::vector<ProgramFile> TargetCheck::Write(const CgProgram& program, const std::string& file,
                                            ProblemList& problems) const
{
    CheckTargets(program.Plan, AllCompileTargets(), file, problems);
    return {};
}

} // namespace Mox::Host
