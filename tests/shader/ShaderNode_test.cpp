#include "mox/shader/ShaderNode.h"
#include "tests/support/Failure.h"

#include <gtest/gtest.h>

namespace {

const ShaderType float3(ComponentType::Float, 3, 1, 1);

ShaderFunction TwoToOne(ShaderLevel level)
{
    ShaderFunction function;
    function.SetName("f");
    function.SetLevel(level);
    const auto add = [&](ShaderDirection direction, const char* name) {
        ShaderParameter parameter;
        parameter.Direction = direction;
        parameter.Name = name;
        parameter.Type = float3;
        function.Parameters.push_back(parameter);
    };
    add(ShaderDirection::Input, "a");
    add(ShaderDirection::Output, "o");
    add(ShaderDirection::Input, "b");
    return function;
}

TEST(ShaderNode, DescribesItself)
{
    EXPECT_EQ(ShaderNode::CreateFunctionNode(TwoToOne(ShaderLevel::Automatic))->Describe(),
              "function \"f\" (2/1/*)");
    EXPECT_EQ(ShaderNode::CreateFunctionNode(TwoToOne(ShaderLevel::Fragment))->Describe(),
              "function \"f\" (2/1/f)");
    EXPECT_EQ(ShaderNode::CreateFunctionNode(TwoToOne(ShaderLevel(9)))->Describe(),
              "function \"f\" (2/1/)");
    EXPECT_EQ(ShaderNode::CreateInterfaceParameter("time", -2, float3)->Describe(),
              "interface parameter \"time\" (float3,flags=-2)");
    const ShaderNodeHandle varying = ShaderNode::CreateVaryingParameter("uv", float3);
    EXPECT_EQ(varying->Describe(), "varying parameter \"uv\" (float3)");
    varying->Register = {ShaderRegisterType::VertexAttribute, 2};
    EXPECT_EQ(varying->Describe(), "varying parameter \"uv\" (float3 : ATTR2)");
    EXPECT_EQ(ShaderNode::CreateUniformParameter("u", float3)->Describe(),
              "uniform parameter \"u\" (float3)");
    EXPECT_EQ(ShaderNode::CreateRegisterParameter({ShaderRegisterType::FragmentFace, 0}, float3)
                  ->Describe(),
              "Cg register parameter FACE (float3)");
    EXPECT_EQ(ShaderNode::CreateInterpolantParameter(float3)->Describe(),
              "interpolant parameter (float3)");
    const ShaderNode unknown(ShaderNodeKind(6));
    EXPECT_EQ(FailureOf([&] { unknown.Describe(); }), "unknown node type");
    varying->Type.Component = ComponentType(77);
    varying->Register.Type = ShaderRegisterType(18);
    EXPECT_EQ(FailureOf([&] { varying->Describe(); }), "unknown component type")
        << "the type is written ahead of the register";
    const ShaderNodeHandle face =
        ShaderNode::CreateRegisterParameter({ShaderRegisterType::FragmentFace, 0}, float3);
    face->Type.Component = ComponentType(77);
    face->Register.Type = ShaderRegisterType(18);
    EXPECT_EQ(FailureOf([&] { face->Describe(); }), "invalid register type")
        << "here the register comes first";
}

TEST(ShaderNode, PortsFollowTheKind)
{
    const auto portsOf = [](const ShaderNodeHandle& node) {
        std::string text;
        for (const ShaderPort& port : node->Inputs)
            text += port.Name + " ";
        text += "->";
        for (const ShaderPort& port : node->Outputs)
            text += " " + port.Name;
        return text;
    };
    EXPECT_EQ(portsOf(ShaderNode::CreateFunctionNode(TwoToOne(ShaderLevel::Vertex))), "a b -> o");
    EXPECT_EQ(portsOf(ShaderNode::CreateFunctionNode({})), "->");
    EXPECT_EQ(portsOf(ShaderNode::CreateInterfaceParameter("!", 0, float3)), "write -> read");
    EXPECT_EQ(portsOf(ShaderNode::CreateInterpolantParameter(float3)), "write -> read");
    EXPECT_EQ(portsOf(ShaderNode::CreateVaryingParameter("float", float3)), "-> read");
    EXPECT_EQ(portsOf(ShaderNode::CreateRegisterParameter({ShaderRegisterType::VertexTexCoord, 0},
                                                          float3)),
              "write ->");
    EXPECT_EQ(portsOf(ShaderNode::CreateRegisterParameter({ShaderRegisterType::FragmentTexCoord, 0},
                                                          float3)),
              "-> read");

    const ShaderNodeHandle uniform = ShaderNode::CreateUniformParameter("u", float3);
    EXPECT_EQ(uniform->FindInputPort("read"), -1);
    EXPECT_EQ(FailureOf([&] { uniform->GetInputPort("write"); }),
              "uniform parameter \"u\" (float3): input port \"write\" does not exist");
    const auto function = ShaderNode::CreateFunctionNode(TwoToOne(ShaderLevel::Vertex));
    EXPECT_EQ(FailureOf([&] { function->GetOutputPort("a"); }),
              "function \"f\" (2/1/v): output port \"a\" does not exist");
    EXPECT_EQ(FailureOf([&] { function->CreateParameterPorts(); }),
              "internal error: unknown parameter type");
    EXPECT_EQ(FailureOf([] { TwoToOne(ShaderLevel::Vertex).GetParameter(3); }),
              "index out of range");
    EXPECT_EQ(FailureOf([] { TwoToOne(ShaderLevel::Vertex).GetParameter(-1); }),
              "index out of range");
}

TEST(ShaderNode, NamesAreCgNames)
{
    for (const char* good : {"_", "a", "Z9", "_0", "return"})
        EXPECT_TRUE(ShaderNode::IsValidCgName(good)) << good;
    for (const char* bad : {"", "9a", "a b", "a-b", "a.b", "\xe9t\xe9", "a\xc3\xa9"})
        EXPECT_FALSE(ShaderNode::IsValidCgName(bad)) << bad;

    EXPECT_EQ(FailureOf([] { ShaderNode::CreateVaryingParameter("a b", float3); }),
              "parameter name \"a b\" is not a valid Cg variable name");
    ShaderFunction function = TwoToOne(ShaderLevel::Vertex);
    function.Parameters[1].Name = "1";
    EXPECT_EQ(FailureOf([&] { ShaderNode::CreateFunctionNode(function); }),
              "output port name \"1\" is not a valid Cg variable name");
    function.Parameters[2].Name = "2";
    EXPECT_EQ(FailureOf([&] { ShaderNode::CreateFunctionNode(function); }),
              "input port name \"2\" is not a valid Cg variable name");
}

} // namespace
