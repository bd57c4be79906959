#include "mox/host/AttributeText.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Failure.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

using namespace Mox::Materials;

namespace {

ShaderNodeHandle FunctionOf(const ShaderType& type)
{
    ShaderFunctionBuilder builder;
    builder.AddInput(type, "i");
    builder.AddOutput(type, "o");
    return builder.Build(ShaderLevel::Automatic, "f");
}

/// Parses a type from its formatted form; its rows follow after "@" if that form omits them.
ShaderType ReadType(const std::string& text)
{
    const std::size_t mark = text.find_first_of("[@");
    ShaderType type = Mox::Host::ParseShaderType(text.substr(0, mark)).value();
    if (mark != text.npos)
        (text[mark] == '[' ? type.ArrayLength : type.Rows) = std::stoi(text.substr(mark + 1));
    return type;
}

/// Each line contains the types of an output and an input.
TEST(ShaderGraphGenerator, ConnectConverts)
{
    ExpectSession("shader/conversions.txt", [](const std::string& line) {
        ShaderGraph graph;
        ShaderGraphGenerator generator(graph);
        const std::size_t arrow = line.find(" -> ");
        const ShaderNodeHandle tail = FunctionOf(ReadType(line.substr(0, arrow)));
        const ShaderNodeHandle head = FunctionOf(ReadType(line.substr(arrow + 4)));
        generator.AddNode(tail);
        generator.AddNode(head);
        const std::string failure = FailureOf([&] { generator.Connect(tail, "o", head, "i"); });
        if (failure != "no failure") {
            EXPECT_TRUE(graph.Nodes.size() == 2 && graph.Edges.empty());
            return failure + "\n";
        }
        EXPECT_EQ(generator.NodeMap.size(), 2u);
        std::string text = graph.Nodes.size() == 2 ? "" : graph.Nodes.back()->Describe() + "\n";
        text += graph.Nodes.back()->Code;
        for (const auto& edge : graph.Edges)
            text += edge->TailPort + " -> " + edge->HeadPort + "\n";
        return text;
    });
}

} // namespace
