#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Failure.h"
#include "tests/support/TestNode.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

using namespace Mox::Materials;

namespace {

constexpr auto f = ComponentType::Float;
constexpr auto h = ComponentType::Half;

ShaderNodeHandle FunctionFrom(const ShaderType& input, const ShaderType& output)
{
    ShaderFunctionBuilder builder;
    builder.AddInput(input, "i");
    builder.AddOutput(output, "o");
    return builder.Build(ShaderLevel::Automatic, "f");
}

TEST(ShaderGraphGenerator, ConnectConverts)
{
    struct Case
    {
        ShaderType From;
        ShaderType To;
        const char* Result; ///< "" for one edge, an adapter's body, or a failure
    };
    const Case cases[] = {
        {{f, 3, 1, 1}, {f, 3, 1, 1}, ""},
        {{f, 3, 1, 2}, {f, 3, 1, 2}, ""},
        {{f, 3, 4, 1}, {f, 3, 4, 1}, ""},
        {{h, 3, 1, 1}, {f, 3, 1, 1}, "\tout_value = in_value;\n"},
        {{f, 1, 1, 1}, {h, 1, 1, 1}, "\tout_value = in_value;\n"},
        {{f, 1, 1, 1}, {f, 4, 1, 1}, "\tout_value = in_value.xxxx;\n"},
        {{f, 1, 1, 1}, {h, 2, 1, 1}, "\tout_value = in_value.xx;\n"},
        {{ComponentType::Sampler2D, 1, 1, 1},
         {ComponentType::Bool, 3, 1, 1},
         "\tout_value = in_value.xxx;\n"},
        {{f, 3, 1, 1}, {f, 1, 1, 1}, "cannot convert float3 to float"},
        {{f, 3, 1, 1}, {f, 4, 1, 1}, "cannot convert float3 to float4"},
        {{f, 3, 1, 2}, {f, 3, 1, 1}, "cannot convert float3[2] to float3"},
        {{f, 3, 4, 1}, {f, 3, 3, 1}, "cannot convert float4x3 to float3x3"},
        {{f, 1, 1, 1}, {f, 1, 0, 1}, "cannot convert float to float"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.From.Format() + " to " + c.To.Format());
        ShaderGraph graph;
        ShaderGraphGenerator generator(graph);
        const ShaderNodeHandle tail = FunctionFrom(c.From, c.From);
        const ShaderNodeHandle head = FunctionFrom(c.To, c.To);
        generator.AddNode(tail);
        generator.AddNode(head);
        const std::string failure = FailureOf([&] { generator.Connect(tail, "o", head, "i"); });
        if (failure != "no failure") {
            EXPECT_EQ(failure, c.Result);
            EXPECT_EQ(graph.Nodes.size(), 2u);
            EXPECT_TRUE(graph.Edges.empty());
        } else if (graph.Nodes.size() == 2) {
            EXPECT_STREQ("", c.Result);
            EXPECT_EQ(graph.Edges.size(), 1u);
        } else {
            EXPECT_EQ(graph.Nodes.back()->Code, c.Result);
            EXPECT_EQ(graph.Nodes.back()->Describe(), "function \"promoteAndSplat\" (1/1/*)");
            EXPECT_EQ(graph.Edges.front()->HeadPort, "in_value");
            EXPECT_EQ(graph.Edges.back()->TailPort, "out_value");
            EXPECT_EQ(graph.Edges.size(), 2u);
            EXPECT_EQ(generator.NodeMap.size(), 2u);
        }
    }
}

TEST(GuiNode, RegisterEdgesRecordsBothEnds)
{
    ShaderGraph graph;
    ShaderGraphGenerator generator(graph);
    TestNode node("T");
    auto in = boost::make_shared<GuiEdge>();
    in->HeadPort = "in_a";
    auto out = boost::make_shared<GuiEdge>();
    out->TailPort = "out_a";
    node.AddInEdge(in);
    node.AddOutEdge(out);
    const auto shaderNode = FunctionFrom({f, 1, 1, 1}, {f, 1, 1, 1});
    node.RegisterEdges(generator, shaderNode);
    node.RegisterEdges(generator, shaderNode);
    EXPECT_FALSE(generator.EdgeMap.at(in).Tail);
    EXPECT_EQ(generator.EdgeMap.at(in).Heads.size(), 2u) << "heads gather, nothing is examined";
    EXPECT_EQ(generator.EdgeMap.at(in).HeadPorts.at(1), "in_a");
    EXPECT_EQ(generator.EdgeMap.at(out).Tail, shaderNode);
    EXPECT_EQ(generator.EdgeMap.at(out).TailPort, "out_a");
    generator.EdgeMap.clear();
    in.reset();
    EXPECT_THROW(node.RegisterEdges(generator, shaderNode), boost::bad_weak_ptr);
}

} // namespace
