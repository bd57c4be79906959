#include "mox/Text.h"
#include "mox/program/CgWriter.h"
#include "mox/program/ProgramPlanner.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

const ShaderType vector2(ComponentType::Float, 2, 1, 1);
const ShaderType vector4(ComponentType::Float, 4, 1, 1);
const ShaderType matrix(ComponentType::Float, 4, 4, 1);
const ShaderType integer(ComponentType::Int, 1, 1, 1);

using Register = ShaderRegisterType;

/// Builds shader graphs as plug-ins might, with parameters that none of our nodes create. Every
/// node is attributed to the material node whose name it is given.
class GraphMaker
{
public:
    GraphMaker()
    {
        Fixed("clip", Register::VertexPosition, 0, vector4);
        Fixed("pixel", Register::FragmentColorOut, 0, vector4);
    }

    ShaderNodeHandle Add(const std::string& id, const ShaderNodeHandle& node)
    {
        _graph.InsertNode(node);
        _origins.Set(*node, {id, "Test", {}, {}, {}});
        return node;
    }

    /// Adds an input or output in a given register.
    ShaderNodeHandle Fixed(const std::string& id, Register type, std::int32_t index,
                           const ShaderType& value)
    {
        const auto node = ShaderNode::CreateRegisterParameter({type, index}, value);
        node->Name = id;
        return Add(id, node);
    }

    ShaderNodeHandle Stream(const std::string& id, const ShaderType& type)
    {
        return Add(id, ShaderNode::CreateVaryingParameter(id, type));
    }

    ShaderNodeHandle Uniform(const std::string& id, const ShaderType& type)
    {
        return Add(id, ShaderNode::CreateUniformParameter(id, type));
    }

    ShaderNodeHandle Interpolant(const std::string& id, const ShaderNodeHandle& source)
    {
        const auto node =
            Add(id, ShaderNode::CreateInterpolantParameter(source->Outputs.front().Type));
        Connect(source, source->Outputs.front().Name, node, "write");
        return node;
    }

    /// Adds a function of the first outputs of other nodes; its inputs are in_0, in_1 and so on.
    ShaderNodeHandle Function(const std::string& id, ShaderLevel level,
                              const std::vector<ShaderNodeHandle>& sources, const ShaderType& type,
                              const std::string& body)
    {
        ShaderFunctionBuilder builder;
        for (std::size_t i = 0; i < sources.size(); ++i)
            builder.AddInput(sources[i]->Outputs.front().Type, Compose("in_", i));
        builder.AddOutput(type, "out_value");
        builder.AppendCode(Compose("\tout_value", body, ";\n"));
        const auto node = Add(id, builder.Build(level, id + "Code"));
        for (std::size_t i = 0; i < sources.size(); ++i)
            Connect(sources[i], sources[i]->Outputs.front().Name, node, Compose("in_", i));
        return node;
    }

    /// Connects these nodes to outputs, through a function in the stage of the output.
    void End(const std::vector<ShaderNodeHandle>& vertex,
             const std::vector<ShaderNodeHandle>& fragment)
    {
        const auto clip = Function("clipEnd", ShaderLevel::Vertex, vertex, vector4, " = 0");
        const auto pixel = Function("pixelEnd", ShaderLevel::Fragment, fragment, vector4, " = 0");
        auto output = _graph.Nodes.begin();
        Connect(clip, "out_value", *output++, "write");
        Connect(pixel, "out_value", *output, "write");
    }

    void Connect(const ShaderNodeHandle& tail, const std::string& tailPort,
                 const ShaderNodeHandle& head, const std::string& headPort)
    {
        _graph.ConnectPorts(tail, tailPort, head, headPort, false);
    }

    ProgramPlan Plan(ProblemList& problems) const
    {
        return PlanProgram(_graph, _origins, {}, StageCopies::HandedOn, problems);
    }

    /// Describes the problems or, if there are none, both programs.
    std::string Describe() const
    {
        ProblemList problems;
        ProgramPlan plan = Plan(problems);
        if (problems.HasErrors())
            return FormatProblems(problems);
        const CgProgram program = WriteCg(std::move(plan), {false});
        return Compose(FormatProblems(problems), program.Vertex.Text, "// ---- fragment\n",
                       program.Fragment.Text);
    }

private:
    ShaderGraph _graph;
    ShaderOrigins _origins;
};

constexpr auto automatic = ShaderLevel::Automatic;

/// Both stages need the copies. Errors and programs are compared as one text, case by case.
TEST(ProgramPlan, OfParametersThatPlugInsMake)
{
    std::string text;
    const auto tell = [&](const char* what, const auto& make) {
        GraphMaker graph;
        make(graph);
        text += Compose("==== ", what, "\n", graph.Describe());
    };
    tell("a function of the fragment stage before an interpolant", [](GraphMaker& graph) {
        const auto uv = graph.Stream("uv", vector2);
        const auto rough = graph.Function("rough", ShaderLevel::Fragment, {uv}, vector2, " = in_0");
        graph.End({uv}, {graph.Interpolant("handed", rough)});
    });
    tell("a value read directly and through an interpolant", [](GraphMaker& graph) {
        const auto uv = graph.Stream("uv", vector2);
        const auto square = graph.Function("square", automatic, {uv}, vector2, " = in_0*in_0");
        graph.End({uv}, {square, graph.Interpolant("handed", square)});
    });
    tell("two outputs in one register", [](GraphMaker& graph) {
        const auto uv = graph.Stream("uv", vector4);
        graph.Connect(uv, "read", graph.Fixed("again", Register::VertexPosition, 0, vector4),
                      "write");
        graph.End({uv}, {uv});
    });
    tell("two values of the vertex stage in one register", [](GraphMaker& graph) {
        const auto uv = graph.Stream("uv", vector2);
        for (const char* name : {"one", "two"})
            graph.Connect(uv, "read", graph.Fixed(name, Register::VertexTexCoord, 0, vector2),
                          "write");
        graph.End({uv}, {graph.Fixed("own", Register::FragmentTexCoord, 0, vector2)});
    });
    tell("two inputs in one register", [](GraphMaker& graph) {
        graph.End({graph.Fixed("one", Register::VertexAttribute, 0, vector4),
                   graph.Fixed("two", Register::VertexAttribute, 0, vector2)},
                  {});
    });
    tell("one input twice, beside which streams and crossing values find their own registers",
         [](GraphMaker& graph) {
             const auto uv = graph.Stream("uv", vector2);
             graph.Connect(uv, "read", graph.Fixed("own", Register::VertexTexCoord, 0, vector2),
                           "write");
             graph.End({graph.Fixed("one", Register::VertexAttribute, 0, vector4),
                        graph.Fixed("two", Register::VertexAttribute, 0, vector4)},
                       {uv, graph.Fixed("own", Register::FragmentTexCoord, 0, vector2)});
         });
    tell("a register beyond the last", [](GraphMaker& graph) {
        graph.End({graph.Fixed("far", Register::VertexAttribute, 16, vector4)}, {});
    });
    tell("edges to ports that do not exist, or of another type", [](GraphMaker& graph) {
        const auto uv = graph.Stream("uv", vector2);
        const auto copy = graph.Function("copy", automatic, {uv}, vector2, " = in_0");
        graph.Connect(uv, "read", copy, "in_7");
        graph.Connect(uv, "red", copy, "in_0");
        const auto wide = graph.Stream("wide", vector4);
        const auto narrow = graph.Function("narrow", automatic, {wide}, vector2, " = in_0.xy");
        graph.Connect(uv, "read", narrow, "in_0");
        graph.End({copy}, {});
    });
    tell("a texture of both stages among others", [](GraphMaker& graph) {
        const ShaderType sampler(ComponentType::Sampler2D, 1, 1, 1);
        std::vector<ShaderNodeHandle> textures;
        for (const char* name : {"a", "b", "c", "d", "e", "both", "low"})
            textures.push_back(graph.Uniform(name, sampler));
        graph.End({textures[6], textures[5]},
                  {textures[0], textures[1], textures[2], textures[3], textures[4], textures[5]});
    });
    tell("copies that cannot cross", [](GraphMaker& graph) {
        const auto uv = graph.Stream("uv", {ComponentType::Float, 1, 1, 1});
        const auto world =
            graph.Function("world", automatic, {graph.Uniform("m", matrix)}, matrix, " = in_0");
        const auto whole = graph.Function("whole", automatic, {uv}, integer, " = int( in_0 )");
        const auto count = graph.Function("count", automatic, {whole}, integer, " = in_0");
        graph.End({world, count}, {world, count});
    });
    tell("a value of the vertex stage that cannot cross", [](GraphMaker& graph) {
        const auto uv = graph.Stream("uv", {ComponentType::Float, 1, 1, 1});
        const auto count = graph.Function("count", ShaderLevel::Vertex, {uv}, integer, " = 1");
        graph.End({count}, {count});
    });
    ExpectGolden("program/plugin_parameters.txt", text);
}

/// The number of interpolated components if the fragment stage reads vectors of three components,
/// and both stages read three two-component copies of some wider vectors.
TEST(ProgramPlan, FitsWhateverComponentsFit)
{
    std::string programs;
    const auto plan = [&](int vectors, int pairs) {
        GraphMaker graph;
        std::vector<ShaderNodeHandle> vertex;
        std::vector<ShaderNodeHandle> fragment(vectors);
        for (int i = 0; i < vectors; ++i)
            fragment[i] = graph.Stream(Compose("v", i), ShaderType(ComponentType::Float, 3, 1, 1));
        for (int i = 0; i < pairs; ++i) {
            const auto source = graph.Stream(Compose("s", i), vector4);
            for (const char* part : {"xy", "yx", "yy"}) {
                const auto copy = graph.Function(Compose(part, i), automatic, {source}, vector2,
                                                 Compose(" = in_0.", part));
                vertex.push_back(copy);
                fragment.push_back(copy);
            }
        }
        graph.End(vertex, fragment);
        programs = graph.Describe();
        ProblemList problems;
        std::int32_t components = 0;
        for (const PlannedCrossing& crossing : graph.Plan(problems).Crossings) {
            for (const CrossingPiece& piece : crossing.Pieces)
                components += piece.Width;
        }
        return problems.HasErrors() ? problems.Problems().front().Rule : Compose(components);
    };
    // Three components each require 13 registers if they are not split.
    EXPECT_EQ(plan(13, 0), "39");
    EXPECT_EQ(plan(14, 0), "too-many-interpolants");
    // Two components of each source are read, by six copies.
    EXPECT_EQ(plan(10, 5), "40");
    EXPECT_EQ(plan(10, 6), "too-many-interpolants");
    EXPECT_EQ(plan(10, 1), "36");
    // The second source is in the second half of its register.
    EXPECT_EQ(plan(8, 3), "30");
    EXPECT_NE(programs.find("float4( interpolant8.z, interpolant8.w, 0.0, 0.0 )"), programs.npos)
        << programs;
}

} // namespace
