#include "mox/shader/ShaderGraphGenerator.h"
#include "tests/support/Failure.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <functional>

namespace {

const ShaderType scalar(ComponentType::Float, 1, 1, 1);
const ShaderType vector(ComponentType::Float, 3, 1, 1);

ShaderEdgeHandle EdgeBetween(const ShaderNodeHandle& tail, const ShaderNodeHandle& head)
{
    return boost::make_shared<ShaderEdge>(tail, "read", head, "write", false);
}

/// A graph with two uniforms, an interface parameter and an edge.
class ShaderGraphTest : public testing::Test
{
protected:
    ShaderGraphTest()
    {
        for (const ShaderNodeHandle& node : {One, Two, Time})
            Graph.InsertNode(node);
        Graph.InsertEdge(Edge);
    }

    ShaderGraph Graph;
    ShaderGraphGenerator Generator{Graph};
    const ShaderNodeHandle One = ShaderNode::CreateUniformParameter("one", scalar);
    const ShaderNodeHandle Two = ShaderNode::CreateUniformParameter("two", scalar);
    const ShaderNodeHandle Time = ShaderNode::CreateInterfaceParameter("time", 0, scalar);
    const ShaderNodeHandle Stranger = ShaderNode::CreateUniformParameter("stranger", scalar);
    const ShaderEdgeHandle Edge = EdgeBetween(One, Two);
};

TEST_F(ShaderGraphTest, RefusesWithAReason)
{
    ShaderNodeHandle gone = ShaderNode::CreateUniformParameter("gone", scalar);
    const ShaderEdgeHandle fromGone = EdgeBetween(gone, One);
    const ShaderEdgeHandle toGone = EdgeBetween(One, gone);
    gone.reset();
    const ShaderEdgeHandle listed = EdgeBetween(One, Two);
    One->AddOutEdge(listed);
    const ShaderEdgeHandle listedAtHead = EdgeBetween(One, Two);
    Two->AddInEdge(listedAtHead);
    Generator.AddNode(Stranger);
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"node for addition already exists in graph", [&] { Graph.InsertNode(One); }},
        {"interface parameter \"time\" (float3,flags=0) already exists in graph",
         [&] { Graph.InsertNode(ShaderNode::CreateInterfaceParameter("time", 0, vector)); }},
        {"edge tail node has been deleted", [&] { Graph.InsertEdge(fromGone); }},
        {"edge head node has been deleted", [&] { Graph.InsertEdge(toGone); }},
        {"edge head and tail are the same node", [&] { Graph.InsertEdge(EdgeBetween(One, One)); }},
        {"edge for addition already exists in graph", [&] { Graph.InsertEdge(Edge); }},
        {"tail node on edge for addition does not exist in graph",
         [&] {
             Graph.InsertEdge(EdgeBetween(ShaderNode::CreateUniformParameter("u", scalar), One));
         }},
        {"head node on edge for addition does not exist in graph",
         [&] {
             Graph.ConnectPorts(One, "read", ShaderNode::CreateUniformParameter("u", scalar), "",
                                false);
         }},
        {"out-edge entry for addition already exists on node", [&] { Graph.InsertEdge(listed); }},
        {"in-edge entry for addition already exists on node",
         [&] { Graph.InsertEdge(listedAtHead); }},
        {"failed to find interface node \"time\" (flags=1)",
         [&] { Graph.FindInterfaceNode("time", 1); }},
        {"interface parameter \"time\" (float,flags=0) expected to have type float3",
         [&] { Graph.GetInterfaceNode("time", 0, vector); }},
        {"uniform parameter \"stranger\" (float) already added to the graph generator",
         [&] { Generator.AddNode(Stranger); }},
        {"uniform parameter \"one\" (float) not yet been added to the graph generator",
         [&] { Generator.GetShaderNode(One); }},
    };
    for (const auto& [message, call] : cases)
        EXPECT_EQ(FailureOf(call), message);
    EXPECT_EQ(Graph.Nodes.size(), 4u);
    EXPECT_EQ(Graph.Edges.size(), 1u);
}

/// Provides a parameter if it is requested by this name.
class NamedProvider : public InterfaceNodeProvider
{
public:
    NamedProvider(std::string name, std::string& asked) : _name(std::move(name)), _asked(asked) {}

    ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t flags,
                                          ShaderGraph&) override
    {
        _asked += _name + " ";
        return name == _name ? ShaderNode::CreateInterfaceParameter(name, flags, scalar)
                             : ShaderNodeHandle();
    }

private:
    std::string _name;
    std::string& _asked;
};

TEST_F(ShaderGraphTest, AsksTheLastProviderFirstAndKeepsNothing)
{
    std::string asked;
    for (const char* name : {"never", "sun", "moon"})
        Graph.Providers.push_back(boost::make_shared<NamedProvider>(name, asked));
    EXPECT_EQ(Graph.FindInterfaceNode("time", 0), Time);
    EXPECT_EQ(asked, "");
    EXPECT_EQ(Graph.FindInterfaceNode("sun", 7)->Flags, 7);
    EXPECT_EQ(asked, "moon sun ");
    EXPECT_FALSE(Graph.HasInterfaceNode("sun", 7));
}

TEST_F(ShaderGraphTest, FoldsInterfaceParameters)
{
    const ShaderNodeHandle second = ShaderNode::CreateInterfaceParameter("time", 0, scalar);
    Generator.AddNode(second);
    EXPECT_EQ(Generator.GetShaderNode(second), Time);
    EXPECT_EQ(Graph.Nodes.size(), 3u);
}

} // namespace
