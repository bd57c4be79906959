#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/ShaderGraphText.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/NodeText.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <map>

using namespace Mox;
using namespace Mox::Materials;

namespace {

using Types = std::map<std::string, ShaderType>;

const ShaderType scalar{ComponentType::Float, 1, 1, 1};
const ShaderType vector{ComponentType::Float, 3, 1, 1};

/// Serves interface parameters as a host does: makes each when first asked, and enters it.
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

/// What the nodes of a material write where values of these types are to be had.
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

const Types everything = {
    {"facingRatio", scalar},   {"time", scalar},        {"frame", scalar},
    {"worldPosition", vector}, {"worldNormal", vector}, {"viewDirection", vector},
};

TEST(Surface, WhatEachTypeShowsAndWrites)
{
    std::string text;
    for (const GuiNodeDescription& row : TestPlugins().Plugins().back().Descriptions()) {
        const auto node = TestPlugins().CreateNode(row.TypeName);
        EXPECT_EQ(node->GetTitle(), row.Label);
        EXPECT_FALSE(node->Name->Visible) << "it names no binding";
        EXPECT_FALSE(node->HasBinding());
        text += Compose("== ", row.TypeName, " | ", row.Label, "\n", DescribeState(*node),
                        Generate("node " + row.TypeName, everything));
    }
    ExpectGolden("plugins/Surface.txt", text);
}

TEST(Surface, Materials)
{
    const struct
    {
        const char* Point;
        const char* Material;
        Types Provided;
    } cases[] = {
        {"each input writes one parameter",
         R"(colour CoreConstant; Name=colour
            surface Surface
            colour.read -> surface.in_colour
            colour.read -> surface.in_normal
            colour.read -> surface.in_offset
            colour.read -> surface.in_emission
            time SurfaceTime
            time.read -> surface.in_alpha)",
         everything},
        {"sources of one type read one parameter, which is converted at the surface",
         R"(surface Surface
            second SurfaceWorldNormal
            first SurfaceWorldNormal
            first.read -> surface.in_offset
            second.read -> surface.in_normal)",
         everything},
        {"a source needs a provider of its key", "time SurfaceTime", {{"frame", scalar}}},
        {"and of its type", "time SurfaceTime", {{"time", {ComponentType::Half, 1, 1, 1}}}},
        {"a second surface may not write what the first writes, and does nothing then",
         R"(first Surface
            other Surface; Name=other
            time SurfaceTime
            time.read -> first.in_alpha
            time.read -> other.in_colour
            time.read -> other.in_alpha)",
         everything},
    };
    std::string text;
    for (const auto& [point, material, provided] : cases)
        text += Compose("== ", point, "\n", Generate(material, provided));
    ExpectGolden("plugins/SurfaceMaterials.txt", text);
}

} // namespace
