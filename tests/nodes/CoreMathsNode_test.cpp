#include "mox/Text.h"
#include "mox/host/Plugin.h"
#include "tests/support/Golden.h"
#include "tests/support/NodeText.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Mox;
using namespace Mox::Materials;

namespace {

class CoreMathsNodeTest : public testing::Test
{
protected:
    boost::shared_ptr<GuiNode> Create() const { return _plugin.CreateNode("CoreMaths"); }

private:
    const Host::Plugin _plugin{MOX_CORE_PLUGIN};
};

void Choose(GuiNode& node, const char* property, const std::string& word)
{
    node.Properties->Get(property)->SetEnum(word);
    node.UpdatePorts({});
}

TEST_F(CoreMathsNodeTest, WritesEveryFunction)
{
    const auto node = Create();
    const std::vector<std::string> functions = node->Properties->Get("Function")->Choices;
    ASSERT_EQ(functions.size(), 16u);
    for (const std::string& function : functions) {
        Choose(*node, "Function", function);
        std::string text;
        for (const auto& [isConnected, width, precision] :
             {std::tuple(true, 3, ComponentType::Float), std::tuple(true, 1, ComponentType::Half),
              std::tuple(false, 1, ComponentType::Half),
              std::tuple(false, 1, ComponentType::Float)}) {
            node->UpdatePorts({});
            ResolveAlone(*node, isConnected ? "*" : "", width, precision);
            text += Compose("-- ", isConnected ? "connected, " : "not connected, ",
                            ShaderType(precision, width, 1, 1).Format(), "\n",
                            DescribeShader(*node), "\n");
        }
        std::string file = function;
        std::replace(file.begin(), file.end(), ' ', '_');
        ExpectGolden("nodes/CoreMaths/" + file + ".txt", text);
    }
}

TEST_F(CoreMathsNodeTest, PortsAndVisibleDefaultsFollowTheFunction)
{
    const auto node = Create();
    std::string text;
    for (const std::string& function : node->Properties->Get("Function")->Choices) {
        Choose(*node, "Function", function);
        text += Compose(node->GetTitle(), ":");
        for (const GuiPort& port : node->InputPorts)
            text += Compose(" ", port.Name, "/", port.Label, port.CountFixed ? "/1" : "",
                            port.PrecisionFixed ? "/float" : "");
        text += Compose(" ->", node->OutputPorts.front().CountFixed ? " 1" : " free", ";");
        for (const auto& property : node->Properties->Properties) {
            if (property->Visible && property->Kind == GuiPropertyKind::Float)
                text += " " + property->Name.substr(sizeof("Default"));
        }
        text += "\n";
    }
    EXPECT_EQ(text,
              "Multiply: in_value1/in1 in_value2/in2 -> free; Value 1 Value 2\n"
              "Addition: in_value1/in1 in_value2/in2 -> free; Value 1 Value 2\n"
              "Subtraction: in_value1/in1 in_value2/in2 -> free; Value 1 Value 2\n"
              "Invert: in_value1/in -> free; Value 1\n"
              "Power: in_value1/in in_power/power/1 -> free; Value 1 Power\n"
              "Clamp: in_value1/in in_min/min in_max/max -> free; Value 1 Min Max\n"
              "Range: in_value1/in in_min/min in_max/max in_oldmin/old min in_oldmax/old max -> "
              "free; Value 1 Min Max Old Min Old Max\n"
              "Lerp: in_value1/in1 in_value2/in2 in_blend/blend/1 -> free; Value 1 Value 2 Blend\n"
              "SmoothStep: in_value1/in1 in_value2/in2 in_blend/blend/1 -> free; Value 1 Value 2 "
              "Blend\n"
              "Compare: in_value1/in1 in_value2/in2 in_test1/test1/1 in_test2/test2/1 -> free; "
              "Value 1 Value 2 Test 1 Test 2\n"
              "Dot Product: in_value1/in1 in_value2/in2 -> 1; Value 1 Value 2\n"
              "Fresnel: in_facing/facing/1/float in_min/min in_scale/scale in_power/power/1 -> 1; "
              "Min Power Scale\n"
              "Ceil: in_value1/in -> free; Value 1\n"
              "Floor: in_value1/in -> free; Value 1\n"
              "Frac: in_value1/in -> free; Value 1\n"
              "Abs: in_value1/in -> free; Value 1\n");
}

TEST_F(CoreMathsNodeTest, InputsWithoutEdgeBecomeConstantsAheadOfTheBody)
{
    const auto node = Create();
    Choose(*node, "Function", "Lerp");
    node->Properties->Get("Default Value 2")->SetFloat(1234567.0f);
    ResolveAlone(*node, "in_value1", 3, ComponentType::Float);
    EXPECT_EQ(DescribeShader(*node), "nodes: 1\n"
                                     "\n"
                                     "[1] function \"mathsCode\" (1/1/*)\n"
                                     "void mathsCode( in float3 in_value1, out float3 out_value )\n"
                                     "{\n"
                                     "\tfloat3 in_value2 = float( 1.23457e+06 ).xxx;\n"
                                     "\tfloat in_blend = float( 0.5 ).x;\n"
                                     "\tout_value = lerp( in_value1, in_value2, in_blend );\n"
                                     "}\n"
                                     "\n"
                                     "edges: 0\n"
                                     "edge to in_value1 ends at [1].in_value1\n");
    node->UpdatePorts({});
    EXPECT_FALSE(node->GetInputPort("in_value1").Connected) << "ports are rebuilt, not reused";
}

TEST_F(CoreMathsNodeTest, ExecutionLevelOverridesTheFunctionsOwn)
{
    const auto node = Create();
    std::string levels;
    for (const char* function : {"Abs", "Multiply"}) {
        for (const char* level : {"Automatic", "Vertex", "Fragment"}) {
            Choose(*node, "Function", function);
            Choose(*node, "Execution Level", level);
            ResolveAlone(*node, "*", 1, ComponentType::Half);
            const std::string text = DescribeShader(*node);
            levels += text[text.find(')') - 1];
        }
    }
    EXPECT_EQ(levels, "fvf*vf");
}

TEST_F(CoreMathsNodeTest, FailuresLeaveTheGeneratorAsItWas)
{
    const auto node = Create();
    EXPECT_EQ(DescribeShader(*node), "failure: cannot read unknown component count\n");
    node->ResolveComponentCounts();
    EXPECT_EQ(DescribeShader(*node), "failure: cannot read unknown precision\n");
    Choose(*node, "Function", "Fresnel");
    EXPECT_EQ(DescribeShader(*node),
              "failure: a value needs to be supplied to the \"facing\" port on the "
              "Fresnel maths node\n");
    Choose(*node, "Function", "Abs");
    ResolveAlone(*node, "*", 3, ComponentType::Half);
    node->InputPorts.front().Connected = false;
    node->InputPorts.front().Precision = ComponentType::Int;
    EXPECT_EQ(DescribeShader(*node), "failure: cannot determine zero type for int3\n");
}

} // namespace
