#include "mox/shader/ShaderGraph.h"
#include "tests/support/Failure.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

namespace {

const ShaderType scalar(ComponentType::Float, 1, 1, 1);

ShaderNodeHandle Function()
{
    return ShaderNode::CreateFunctionNode({});
}

ShaderEdgeHandle Edge(const ShaderNodeHandle& tail, const ShaderNodeHandle& head)
{
    return boost::make_shared<ShaderEdge>(tail, "o", head, "i", false);
}

TEST(ShaderGraph, InsertNode)
{
    ShaderGraph graph;
    const ShaderNodeHandle function = Function();
    const ShaderNodeHandle key = ShaderNode::CreateInterfaceParameter("k", 1, scalar);
    graph.InsertNode(function);
    graph.InsertNode(Function());
    graph.InsertNode(key);
    graph.InsertNode(ShaderNode::CreateInterfaceParameter("k", -1, scalar));
    EXPECT_EQ(FailureOf([&] { graph.InsertNode(function); }),
              "node for addition already exists in graph");
    EXPECT_EQ(FailureOf([&] { graph.InsertNode(key); }),
              "interface parameter \"k\" (float,flags=1) already exists in graph");
    key->Flags = 9; // a key that is free, on a node that is in the graph
    EXPECT_EQ(FailureOf([&] { graph.InsertNode(key); }),
              "node for addition already exists in graph");
    EXPECT_FALSE(graph.HasInterfaceNode("k", 9));
    EXPECT_EQ(graph.Nodes.size(), 4u);
    EXPECT_EQ(graph.NodeSet.size(), 4u);
    EXPECT_EQ(graph.InterfaceNodes.size(), 2u);
    EXPECT_EQ(graph.Nodes.front(), function);
}

TEST(ShaderGraph, InsertEdgeChecksInOrder)
{
    ShaderGraph graph;
    const ShaderNodeHandle a = Function();
    const ShaderNodeHandle b = Function();
    const ShaderNodeHandle outside = Function();
    graph.InsertNode(a);
    graph.InsertNode(b);

    const ShaderEdgeHandle bothGone = Edge(Function(), Function());
    EXPECT_EQ(FailureOf([&] { graph.InsertEdge(bothGone); }), "edge tail node has been deleted");
    const ShaderEdgeHandle headGone = Edge(outside, Function());
    EXPECT_EQ(FailureOf([&] { graph.InsertEdge(headGone); }), "edge head node has been deleted");
    EXPECT_EQ(FailureOf([&] { graph.InsertEdge(Edge(outside, outside)); }),
              "edge head and tail are the same node");
    EXPECT_EQ(FailureOf([&] { graph.ConnectPorts(outside, "", Function(), "", false); }),
              "tail node on edge for addition does not exist in graph");
    EXPECT_EQ(FailureOf([&] { graph.InsertEdge(Edge(a, outside)); }),
              "head node on edge for addition does not exist in graph");
    const ShaderEdgeHandle edge = Edge(a, b);
    graph.InsertEdge(edge);
    graph.InsertEdge(Edge(a, b));
    EXPECT_EQ(FailureOf([&] { graph.InsertEdge(edge); }),
              "edge for addition already exists in graph");
    EXPECT_EQ(graph.Edges.size(), 2u);
    EXPECT_EQ(graph.EdgeSet.size(), 2u);
    EXPECT_EQ(a->OutEdges.size(), 2u);
    EXPECT_EQ(b->InEdges.front().lock(), edge);
}

class Provider : public InterfaceNodeProvider
{
public:
    explicit Provider(std::string name) : _name(std::move(name)) {}

    ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t flags,
                                          ShaderGraph&) override
    {
        ++Calls;
        if (name != _name)
            return {};
        return ShaderNode::CreateInterfaceParameter(name, flags, scalar);
    }

    int Calls = 0;

private:
    std::string _name;
};

TEST(ShaderGraph, ProvidersAreAskedLastFirst)
{
    ShaderGraph graph;
    const auto first = boost::make_shared<Provider>("time");
    const auto second = boost::make_shared<Provider>("time");
    const auto third = boost::make_shared<Provider>("other");
    graph.Providers = {first, second, third};
    EXPECT_FALSE(graph.HasInterfaceNode("time", 3));
    EXPECT_EQ(graph.FindInterfaceNode("time", 3)->Flags, 3);
    EXPECT_EQ(first->Calls, 0);
    EXPECT_EQ(second->Calls, 1);
    EXPECT_EQ(third->Calls, 1);
    EXPECT_TRUE(graph.Nodes.empty()) << "what a provider gives is not stored";
    EXPECT_EQ(FailureOf([&] { graph.FindInterfaceNode("none", -7); }),
              "failed to find interface node \"none\" (flags=-7)");
    EXPECT_EQ(FailureOf([&] {
                  graph.GetInterfaceNode("time", 0, {ComponentType::Float, 1, 1, 2});
              }),
              "interface parameter \"time\" (float,flags=0) expected to have type float[2]");
}

} // namespace
