#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/AttributeText.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/ShaderGraphText.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/NodeText.h"
#include "tests/support/Session.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <map>
#include <sstream>

using namespace Mox;
using namespace Mox::Materials;

namespace {

using Types = std::map<std::string, ShaderType>;

/// Provides interface parameters like a host: creates each one on its first request and adds it.
class TestProvider : public InterfaceNodeProvider
{
public:
    explicit TestProvider(const Types& types) : _types(types) {}

    ShaderNodeHandle ProvideInterfaceNode(const std::string& name, std::int32_t flags,
                                          ShaderGraph& graph) override
    {
        const auto type = _types.find(name);
        if (type == _types.end() || flags != 0)
            return {};
        const auto node = ShaderNode::CreateInterfaceParameter(name, flags, type->second);
        graph.InsertNode(node);
        return node;
    }

private:
    Types _types;
};

/// Generates the nodes of a material in an environment that provides these types.
std::string Generate(const std::string& material, const Types& provided)
{
    Host::ProblemList problems;
    Host::MaterialGraph graph =
        Host::LoadMaterial(MaterialFromText(material), TestPlugins(), problems);
    Host::ResolveGraph(graph, problems);
    Host::GeneratedShader shader;
    shader.Graph.Providers.push_back(boost::make_shared<TestProvider>(provided));
    Host::GenerateShaderGraph(graph, shader, problems);
    return FormatProblems(problems) + Host::FormatShaderGraph(shader.Graph) + "\n";
}

const Types everything = SurfaceValues();

TEST(Surface, WhatEachTypeShowsAndWrites)
{
    std::string text;
    for (const auto& row : TestPlugins().FindSupplier("Surface")->Types()) {
        const auto node = TestPlugins().CreateNode(row.TypeName).Handle();
        EXPECT_EQ(node->GetTitle(), row.Label);
        EXPECT_FALSE(node->Name->Visible) << "it names no binding";
        EXPECT_FALSE(node->HasBinding());
        text += Compose("== ", row.TypeName, " | ", row.Label, "\n", DescribeState(*node),
                        Generate("node " + row.TypeName, everything));
    }
    ExpectGolden("plugins/Surface.txt", text);
}

/// The first line of each material lists the available types, unless all are available.
TEST(Surface, Materials)
{
    ExpectSession("plugins/SurfaceMaterials.txt", [](const std::string& text) {
        const std::size_t end = text.find('\n');
        std::istringstream words(text.substr(0, end));
        Types provided = everything;
        std::string name, type;
        if (words >> name >> type)
            provided = {{name, Host::ParseShaderType(type).value()}};
        return Generate(text.substr(end + 1), provided);
    });
    const std::string refused = Generate("first SurfacePbr\nother Surface", everything);
    EXPECT_NE(refused.find("\"surfacePbr\" is already written"), refused.npos) << refused;
}

} // namespace
