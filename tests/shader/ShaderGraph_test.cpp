#include "mox/shader/ShaderGraph.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

namespace {

const ShaderType scalar(ComponentType::Float, 1, 1, 1);

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

/// All else that graphs answer is compared with a model, in fuzz/shader.
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
}

} // namespace
