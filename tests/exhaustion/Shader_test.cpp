#include "mox/Text.h"
#include "mox/authoring/GuiPort.h"
#include "mox/program/ShaderGraphText.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/exhaustion/EveryAllocation.h"
#include "tests/support/Failure.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <memory>

using namespace Mox;
using Materials::Compose;

namespace {

const std::string longName(40, 'n'); ///< too long for a string's own buffer
const ShaderType float3(ComponentType::Float, 3, 1, 1);
const ShaderType half3(ComponentType::Half, 3, 1, 1);
const ShaderType half1(ComponentType::Half, 1, 1, 1);

/// A graph that is being filled, with two nodes to connect and others that are not in it yet.
struct Work
{
    Work()
    {
        Generator.AddNode(Source);
        Generator.AddNode(Sink);
        Graph.InsertNode(ShaderNode::CreateInterfaceParameter("shared" + longName, 0, half3));
    }

    ShaderGraph Graph;
    ShaderGraphGenerator Generator{Graph};
    ShaderNodeHandle Source = ShaderNode::CreateUniformParameter("source" + longName, half3);
    ShaderNodeHandle Sink = ShaderNode::CreateInterfaceParameter("sink" + longName, 0, half3);
    ShaderNodeHandle Other = ShaderNode::CreateUniformParameter("other" + longName, half3);
    boost::shared_ptr<Materials::GuiEdge> Edge = boost::make_shared<Materials::GuiEdge>();
};

std::unique_ptr<Work> MakeWork()
{
    return std::make_unique<Work>();
}

/// Everything that list, set, table and the nodes' own lists say of the graph.
std::string Describe(const std::unique_ptr<Work>& work)
{
    const ShaderGraph& graph = work->Graph;
    std::string text = Host::FormatShaderGraph(graph);
    text += Compose(graph.Nodes.size(), " ", graph.NodeSet.size(), " ", graph.Edges.size(), " ",
                    graph.EdgeSet.size(), " ", graph.InterfaceNodes.size(), "\n");
    for (const auto& node : graph.Nodes)
        text += Compose(graph.NodeSet.contains(node), " ", node->InEdges.size(), " ",
                        node->OutEdges.size(), "\n");
    for (const auto& edge : graph.Edges)
        text += Compose(graph.EdgeSet.contains(edge), "\n");
    text += Compose(work->Generator.NodeMap.size(), " added\n");
    for (const auto& [key, node] : work->Generator.NodeMap)
        text += Compose(graph.NodeSet.contains(node), "\n");
    for (const auto& [edge, record] : work->Generator.EdgeMap) {
        text += Compose("edge: ", record.Tail != nullptr, " ", record.TailPort, " ",
                        record.Heads.size(), "\n");
        for (const std::string& port : record.HeadPorts)
            text += Compose("to ", port, "\n");
    }
    return text;
}

template <class Call>
void ExpectNoChange(Call call)
{
    ExpectSurvival(
        MakeWork, [&](const std::unique_ptr<Work>& work) { call(*work); }, Describe);
}

TEST(ShaderExhaustion, GraphTakesNodesAndEdgesWholeOrNotAtAll)
{
    const auto connect = [](Work& work, const ShaderNodeHandle& head) {
        work.Graph.ConnectPorts(work.Source, "read", head, "write" + longName, false);
    };
    ExpectNoChange([](Work& work) { work.Graph.InsertNode(work.Other); });
    ExpectNoChange([](Work& work) {
        work.Graph.InsertNode(ShaderNode::CreateInterfaceParameter("other", 1, half3));
    });
    ExpectNoChange([](Work& work) { ExpectRefused([&] { work.Graph.InsertNode(work.Sink); }); });
    ExpectNoChange([&](Work& work) { connect(work, work.Sink); });
    ExpectNoChange([&](Work& work) { ExpectRefused([&] { connect(work, work.Other); }); });
}

TEST(ShaderExhaustion, GeneratorTakesNodesWholeOrNotAtAll)
{
    const auto addShared = [](Work& work, const ShaderType& type) {
        work.Generator.AddNode(ShaderNode::CreateInterfaceParameter("shared" + longName, 0, type));
    };
    ExpectNoChange([](Work& work) { work.Generator.AddNode(work.Other); });
    ExpectNoChange([&](Work& work) { addShared(work, half3); });
    ExpectNoChange([&](Work& work) { ExpectRefused([&] { addShared(work, float3); }); });
    ExpectNoChange([](Work& work) { ExpectRefused([&] { work.Generator.AddNode(work.Source); }); });
}

TEST(ShaderExhaustion, ConnectionsAreLaidWholeOrNotAtAll)
{
    for (const ShaderType& type : {half3, float3, half1}) {
        const auto make = [&] {
            auto work = MakeWork();
            work->Other = ShaderNode::CreateUniformParameter("other" + longName, type);
            work->Generator.AddNode(work->Other);
            return work;
        };
        const auto connect = [](const auto& work) {
            work->Generator.Connect(work->Other, "read", work->Sink, "write");
        };
        ExpectSurvival(make, connect, Describe);
    }
}

TEST(ShaderExhaustion, EdgeRecordsAreWhole)
{
    ExpectNoChange(
        [](Work& work) { work.Generator.RecordEdgeTail(work.Edge, work.Source, longName); });
    const auto makeWithHead = [] {
        auto work = MakeWork();
        work->Generator.RecordEdgeHead(work->Edge, work->Sink, longName);
        return work;
    };
    const auto addHead = [](const auto& work) {
        work->Generator.RecordEdgeHead(work->Edge, work->Other, longName + "2");
    };
    ExpectSurvival(MakeWork, addHead, Describe);
    ExpectSurvival(makeWithHead, addHead, Describe);
}

/// A failure ends the work on a builder, so each attempt takes a new one.
TEST(ShaderExhaustion, BuildersKeepEveryCharacter)
{
    const auto expect = [](auto call) {
        ExpectSurvival([] { return std::make_unique<ShaderFunctionBuilder>(); },
                       [&](auto& builder) {
                           builder = std::make_unique<ShaderFunctionBuilder>();
                           call(*builder);
                       },
                       [](const auto& builder) {
                           std::string text = builder->Body.good() ? builder->Body.str() : "";
                           for (const ShaderParameter& parameter : builder->Parameters)
                               text += parameter.Name;
                           return text;
                       },
                       ExpectUsable);
    };
    Materials::GuiPort port(longName, "label");
    port.SetComponentCount(3);
    port.SetPrecision(ComponentType::Half);
    const std::string code(1000, 'c');
    expect([&](auto& builder) { builder.AppendCode(code); });
    expect([&](auto& builder) { builder.DeclareConstant(half3, longName, 1.0f); });
    expect([&](auto& builder) { builder.DeclareConstantForPort(port, 1.0f); });
    expect([&](auto& builder) { builder.AddInputPort(port); });
    expect([&](auto& builder) {
        builder.AddInput(half3, longName);
        try {
            builder.AddOutput(half3, longName);
            ADD_FAILURE() << "the name is taken";
        } catch (const std::string& message) {
            EXPECT_EQ(message,
                      "parameter name \"" + longName + "\" is duplicated in function \"unknown\"");
        }
    });
}

TEST(ShaderExhaustion, ShaderNodesAreBuiltOrNot)
{
    ShaderFunctionBuilder builder;
    builder.AddInput(half3, longName);
    builder.AddOutput(half3, longName + "2");
    builder.AppendCode(std::string(1000, 'c'));
    const auto make = [] {
        auto node = boost::make_shared<ShaderNode>(ShaderNodeKind::InterfaceParameter);
        node->Type = half3;
        node->CreateParameterPorts();
        return node;
    };
    const auto describe = [](const ShaderNodeHandle& node) {
        std::string text = Compose(node->Describe(), node->Code);
        for (const auto* ports : {&node->Inputs, &node->Outputs}) {
            for (const ShaderPort& port : *ports)
                text += Compose(" ", port.Name);
        }
        return text;
    };
    const auto expect = [&](auto call) { ExpectSurvival(make, call, describe); };
    expect([&](auto& node) { node = builder.Build(ShaderLevel::Automatic, longName); });
    expect([](auto& node) { node = ShaderNode::CreateInterfaceParameter(longName, 1, half3); });
    expect([](auto& node) {
        const ShaderRegister position(ShaderRegisterType::VertexPosition, 0);
        node = ShaderNode::CreateRegisterParameter(position, float3);
    });
    expect([&](const auto& node) { node->LoadFunction(builder); });
}

} // namespace
