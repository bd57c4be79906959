#include "mox/shader/ShaderNode.h"
#include "tests/support/Failure.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

namespace {

const ShaderType float3(ComponentType::Float, 3, 1, 1);

ShaderFunction TwoToOne(ShaderLevel level)
{
    ShaderFunction function;
    function.SetName("f");
    function.SetLevel(level);
    const auto add = [&](std::int32_t direction, const char* name) {
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

TEST(ShaderNode, DescriptionAndPortsFollowTheKind)
{
    using T = ShaderRegisterType;
    const auto function = [](ShaderLevel level) {
        return ShaderNode::CreateFunctionNode(TwoToOne(level));
    };
    const auto parameter = [](const ShaderRegister& where) {
        return ShaderNode::CreateRegisterParameter(where, float3);
    };
    const ShaderNodeHandle varying = ShaderNode::CreateVaryingParameter("float", float3);
    varying->Register = {T::VertexAttribute, 2};
    std::string text;
    for (const ShaderNodeHandle& node :
         {function(ShaderLevel::Automatic), function(ShaderLevel::Vertex),
          function(ShaderLevel::Fragment), function(ShaderLevel(9)),
          ShaderNode::CreateFunctionNode({}), ShaderNode::CreateInterfaceParameter("!", -2, float3),
          ShaderNode::CreateInterpolantParameter(float3), varying,
          ShaderNode::CreateVaryingParameter("uv", float3),
          ShaderNode::CreateUniformParameter("u", float3), parameter({T::VertexTexCoord, 0}),
          parameter({T::FragmentTexCoord, 0}), parameter({T::FragmentFace, 0})}) {
        text += node->Describe() + ":";
        for (const ShaderPort& port : node->Inputs)
            text += " " + port.Name;
        text += " ->";
        for (const ShaderPort& port : node->Outputs)
            text += " " + port.Name;
        text += "\n";
    }
    ExpectGolden("shader/nodes.txt", text);
}

TEST(ShaderNode, DescriptionNamesTheFirstUnknownPart)
{
    const ShaderNode unknown(ShaderNodeKind(6));
    EXPECT_EQ(FailureOf([&] { unknown.Describe(); }), "unknown node type");
    const auto varying = ShaderNode::CreateVaryingParameter("uv", float3);
    const auto face =
        ShaderNode::CreateRegisterParameter({ShaderRegisterType::FragmentFace, 0}, float3);
    for (const auto& node : {varying, face}) {
        node->Type.Component = ComponentType(77);
        node->Register.Type = ShaderRegisterType(18);
    }
    EXPECT_EQ(FailureOf([&] { varying->Describe(); }), "unknown component type");
    EXPECT_EQ(FailureOf([&] { face->Describe(); }), "invalid register type");
}

TEST(ShaderNode, FunctionsHaveTheirOwnPortsAndParameters)
{
    const ShaderFunction function = TwoToOne(ShaderLevel::Vertex);
    const auto node = ShaderNode::CreateFunctionNode(function);
    EXPECT_EQ(FailureOf([&] { node->CreateParameterPorts(); }),
              "internal error: unknown parameter type");
    EXPECT_TRUE(node->Inputs.empty() && node->Outputs.empty());
    for (const int index : {3, -1})
        EXPECT_EQ(FailureOf([&] { function.GetParameter(index); }), "index out of range");
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
