#include "mox/targets/TargetCheck.h"
#include "tests/support/GraphText.h"

#include <gtest/gtest.h>

using namespace Mox;
using namespace Mox::Host;

namespace {

TEST(TargetCheck, SaysWhichNodeNeedsWhatAndWhereItIsMissing)
{
    const ShaderType float4(ComponentType::Float, 4, 1, 1);
    ProgramPlan plan;
    plan.Parameters.push_back({ParameterKind::Sampler,
                               "map",
                               "map",
                               ShaderType(ComponentType::SamplerRect, 1, 1, 1),
                               ShaderRegister(ShaderRegisterType::FragmentTextureUnit, 0),
                               true,
                               false,
                               true,
                               {"picture"}});
    PlannedStage& fragment = plan.StageOf(ProgramStage::Fragment);
    fragment.Inputs = {{ShaderRegister(ShaderRegisterType::FragmentTexCoord, 0), float4, ""},
                       {ShaderRegister(ShaderRegisterType::FragmentPosition, 0), float4, ""},
                       {ShaderRegister(ShaderRegisterType::FragmentTexCoord, 1), float4, ""},
                       {ShaderRegister(ShaderRegisterType::FragmentTexCoord, 2), float4, ""}};
    for (const int width : {4, 2}) {
        const ShaderRegister place(ShaderRegisterType::VertexTexCoord, width == 4 ? 0 : 1);
        plan.StageOf(ProgramStage::Vertex)
            .Outputs.push_back({{place, ShaderType(ComponentType::Float, width, 1, 1), ""},
                                {PlanOperand::Source::Parameter, 0}});
    }
    fragment.Calls = {{0, {{PlanOperand::Source::Register, 0}}, {"out_a"}, "first"},
                      {1, {{PlanOperand::Source::Register, 1}}, {"out_b"}, "place"}};
    fragment.Outputs = {{{ShaderRegister(ShaderRegisterType::FragmentColorOut, 0), float4, ""},
                         {PlanOperand::Source::Result, 0}},
                        {{ShaderRegister(ShaderRegisterType::FragmentDepth, 0), float4, ""},
                         {PlanOperand::Source::Result, 1}}};
    ProblemList problems;
    CheckTargets(plan, {CompileTarget::Hlsl, CompileTarget::Wgsl}, "m.xml", problems);
    EXPECT_EQ(FormatProblems(problems),
              "error target: m.xml: node \"place\": the register WPOS has no counterpart in hlsl, "
              "wgsl\n"
              "error target: m.xml: node \"place\": the register DEPTH has no counterpart in hlsl, "
              "wgsl\n"
              "error target: m.xml: the register TEXCOORD1 is read as float4, but it is written as "
              "float2, which only Cg allows\n"
              "error target: m.xml: the register TEXCOORD2 is read as float4, but nothing writes "
              "it, which only Cg allows\n"
              "error target: m.xml: node \"picture\": the type samplerRECT of \"map\" has no "
              "counterpart in hlsl, wgsl\n");
}

} // namespace
