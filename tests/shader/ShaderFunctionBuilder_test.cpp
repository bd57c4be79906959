#include "mox/authoring/GuiPort.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderNode.h"
#include "tests/support/Failure.h"

#include <gtest/gtest.h>

#include <locale>

namespace {

ShaderType TypeOf(ComponentType component, std::int32_t columns)
{
    return {component, columns, 1, 1};
}

TEST(ShaderFunctionBuilder, ComposesAndBuildsAgain)
{
    ShaderFunctionBuilder builder;
    builder.AddInput(TypeOf(ComponentType::Float, 1), "a");
    builder.AppendCode("\to = a;\n");
    builder.AddOutput(TypeOf(ComponentType::Float, 1), "A");
    const ShaderNodeHandle first = builder.Build(ShaderLevel::Vertex, "");
    EXPECT_EQ(first->Code, "\to = a;\n");
    EXPECT_EQ(first->Describe(), "function \"\" (1/1/v)");
    builder.AppendCode("more");
    const ShaderNodeHandle second = builder.Build(ShaderLevel::Fragment, "2 b");
    EXPECT_EQ(second->Code, "\to = a;\nmore");
    EXPECT_EQ(first->Code, "\to = a;\n");
    EXPECT_EQ(builder.Name, "unknown");
    EXPECT_EQ(builder.Code, "");
}

TEST(ShaderFunctionBuilder, ADuplicateParameterThrowsAString)
{
    ShaderFunctionBuilder builder;
    builder.AddInput(TypeOf(ComponentType::Float, 1), "a");
    try {
        builder.AddOutput(TypeOf(ComponentType::Float, 1), "a");
        ADD_FAILURE() << "the name is taken";
    } catch (const std::string& message) {
        EXPECT_EQ(message, "parameter name \"a\" is duplicated in function \"unknown\"");
    }
}

/// Runs in a locale with decimal commas and digit grouping, which must not affect the output.
TEST(ShaderFunctionBuilder, Constants)
{
    const std::locale before = std::locale::global(std::locale("de_DE.UTF-8"));
    ShaderFunctionBuilder builder;
    builder.DeclareConstant(TypeOf(ComponentType::Float, 3), "lit", 0.5f);
    builder.DeclareConstant(TypeOf(ComponentType::Float, 1), "one", 1.0f);
    builder.DeclareConstant(TypeOf(ComponentType::Half, 4), "zero", 0.0f);
    builder.DeclareConstant({ComponentType::Half, 0, 2, 123456}, "odd", 1234.5f);
    std::locale::global(before);
    EXPECT_EQ(builder.Body.str(), "\tfloat3 lit = float( 0.5 ).xxx;\n"
                                  "\tfloat one = float( 1 ).x;\n"
                                  "\thalf4 zero = half( 0 ).xxxx;\n"
                                  "\thalf2x0 odd[123456] = half( 1234.5 ).;\n");
    EXPECT_EQ(FailureOf([&] { builder.DeclareConstant(TypeOf(ComponentType::Fixed, 2), "n", 0); }),
              "cannot determine zero type for fixed2");
    EXPECT_TRUE(builder.Body.str().ends_with("\tfixed2 n = ")) << "the line so far stays";
    EXPECT_EQ(builder.GetParameterCount(), 0) << "constants are no parameters";
}

TEST(ShaderFunctionBuilder, PortsMustBeResolved)
{
    ShaderFunctionBuilder builder;
    Mox::Materials::GuiPort port("in_a", "a");
    EXPECT_EQ(FailureOf([&] { builder.AddInputPort(port); }),
              "cannot read unknown component count");
    port.SetComponentCount(2);
    EXPECT_EQ(FailureOf([&] { builder.DeclareConstantForPort(port, 1.0f); }),
              "cannot read unknown precision");
    EXPECT_EQ(builder.Body.str(), "");
    port.SetPrecision(ComponentType::Half);
    builder.DeclareConstantForPort(port, 1.0f);
    EXPECT_EQ(builder.Body.str(), "\thalf2 in_a = half( 1 ).xx;\n");
}

} // namespace
