#include "mox/Text.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/host/PluginSet.h"
#include "mox/program/ShaderGeneration.h"
#include "mox/program/ShaderGraphText.h"
#include "tests/support/Failure.h"
#include "tests/support/Golden.h"
#include "tests/support/NodeText.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <map>
#include <vector>

using namespace Mox;
using namespace Mox::Materials;

namespace {

using NodeHandle = boost::shared_ptr<GuiNode>;

constexpr auto f = ComponentType::Float;
constexpr auto h = ComponentType::Half;

/// Serves interface parameters as a host does: makes each when first asked, and enters it.
class TestProvider : public InterfaceNodeProvider
{
public:
    explicit TestProvider(const std::map<std::string, ShaderType>& types) : _types(types) {}

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
    std::map<std::string, ShaderType> _types;
};

void AddEnvironment(ShaderGraph& graph)
{
    graph.Providers.push_back(boost::make_shared<TestProvider>(std::map<std::string, ShaderType>{
        {"facingRatio", {f, 1, 1, 1}},
        {"time", {f, 1, 1, 1}},
        {"frame", {f, 1, 1, 1}},
        {"worldPosition", {f, 3, 1, 1}},
        {"worldNormal", {f, 3, 1, 1}},
        {"viewDirection", {f, 3, 1, 1}},
    }));
}

class SurfaceTest : public testing::Test
{
protected:
    SurfaceTest()
    {
        _plugins.Load(MOX_CORE_PLUGIN);
        _plugins.Load(MOX_SURFACE_PLUGIN);
    }

    const Host::PluginSet& Plugins() const { return _plugins; }

    const Host::Plugin& SurfacePlugin() const { return _plugins.Plugins().back(); }

    NodeHandle Create(const std::string& type) const { return SurfacePlugin().CreateNode(type); }

private:
    Host::PluginSet _plugins;
};

/// The part of a host's export that the nodes of this plug-in see: edges and one run of the
/// generator.
class ExportRun
{
public:
    ShaderGraph Graph;
    ShaderGraphGenerator Generator{Graph};

    void Join(const NodeHandle& tail, const std::string& tailPort, const NodeHandle& head,
              const std::string& headPort)
    {
        const auto& edge = _edges.emplace_back(boost::make_shared<GuiEdge>());
        edge->TailPort = tailPort;
        edge->HeadPort = headPort;
        tail->AddOutEdge(edge);
        head->AddInEdge(edge);
        tail->GetOutputPort(tailPort).Connected = true;
        head->GetInputPort(headPort).Connected = true;
    }

    /// Generates the nodes in order and lays the edges in order.
    std::string Export(const std::vector<NodeHandle>& nodes)
    {
        for (const NodeHandle& node : nodes)
            node->GenerateShader(Generator);
        for (const auto& edge : _edges) {
            const ShaderEdgeRecord& record = Generator.EdgeMap.at(edge);
            for (std::size_t i = 0; i < record.Heads.size(); ++i)
                Generator.Connect(record.Tail, record.TailPort, record.Heads[i],
                                  record.HeadPorts[i]);
        }
        return Host::FormatShaderGraph(Graph);
    }

private:
    std::vector<boost::shared_ptr<GuiEdge>> _edges;
};

TEST_F(SurfaceTest, CatalogueAndWhatEachTypeWrites)
{
    std::string text;
    for (const GuiNodeDescription& row : SurfacePlugin().Descriptions()) {
        EXPECT_EQ(row.Library, "Surface");
        EXPECT_TRUE(row.Listed);
        const NodeHandle node = Create(row.TypeName);
        EXPECT_EQ(node->GetType(), row.TypeName);
        EXPECT_EQ(node->GetTitle(), row.Label);
        EXPECT_FALSE(node->Name->Visible) << "it names no binding";
        EXPECT_FALSE(node->HasBinding());
        ResolveAlone(*node, "*", 1, f);
        ExportRun run;
        AddEnvironment(run.Graph);
        text += Compose("== ", row.TypeName, " | ", row.Label, "\n", DescribeState(*node),
                        run.Export({node}), "\n");
    }
    ExpectGolden("plugins/Surface.txt", text);
    EXPECT_EQ(FailureOf([&] { Create("surface"); }), "cannot create \"surface\" node");
}

TEST_F(SurfaceTest, UnconnectedInputsWriteNothing)
{
    const NodeHandle surface = Create("Surface");
    ExportRun run;
    EXPECT_EQ(run.Export({surface}), "nodes: 0\n\nedges: 0\n");
    surface->GetInputPort("in_offset").Connected = true;
    EXPECT_EQ(run.Export({surface}),
              "nodes: 1\n\n[1] interface parameter \"surfaceOffset\" (float3,flags=0)\n\n"
              "edges: 0\n");
}

TEST_F(SurfaceTest, SourcesOfOneTypeReadOneParameterAndConvertAtTheSurface)
{
    const NodeHandle first = Create("SurfaceWorldNormal");
    const NodeHandle second = Create("SurfaceWorldNormal");
    const NodeHandle surface = Create("Surface");
    ExportRun run;
    AddEnvironment(run.Graph);
    run.Join(first, "read", surface, "in_offset");
    run.Join(second, "read", surface, "in_normal");
    EXPECT_EQ(run.Export({surface, second, first}),
              "nodes: 4\n\n"
              "[1] interface parameter \"surfaceNormal\" (half3,flags=0)\n\n"
              "[2] interface parameter \"surfaceOffset\" (float3,flags=0)\n\n"
              "[3] interface parameter \"worldNormal\" (float3,flags=0)\n\n"
              "[4] function \"promoteAndSplat\" (1/1/*)\n"
              "void promoteAndSplat( in float3 in_value, out half3 out_value )\n"
              "{\n\tout_value = in_value;\n}\n\n"
              "edges: 3\n"
              "[3].read -> [2].write\n"
              "[3].read -> [4].in_value\n"
              "[4].out_value -> [1].write\n");
}

TEST_F(SurfaceTest, SourceNeedsAProviderOfItsKeyAndType)
{
    const NodeHandle time = Create("SurfaceTime");
    ExportRun run;
    run.Graph.Providers.push_back(boost::make_shared<TestProvider>(
        std::map<std::string, ShaderType>{{"frame", {f, 1, 1, 1}}}));
    EXPECT_EQ(FailureOf([&] { time->GenerateShader(run.Generator); }),
              "failed to find interface node \"time\" (flags=0)");
    EXPECT_TRUE(run.Graph.Nodes.empty());
    run.Graph.Providers.push_back(boost::make_shared<TestProvider>(
        std::map<std::string, ShaderType>{{"time", {h, 1, 1, 1}}}));
    EXPECT_EQ(FailureOf([&] { time->GenerateShader(run.Generator); }),
              "interface parameter \"time\" (half,flags=0) expected to have type float");
    EXPECT_TRUE(run.Generator.NodeMap.empty());
}

TEST_F(SurfaceTest, SecondSurfaceMayNotWriteWhatTheFirstWrites)
{
    const NodeHandle first = Create("Surface");
    const NodeHandle second = Create("Surface");
    first->GetInputPort("in_alpha").Connected = true;
    second->GetInputPort("in_colour").Connected = true;
    second->GetInputPort("in_alpha").Connected = true;
    second->SetName("other");
    ExportRun run;
    first->GenerateShader(run.Generator);
    EXPECT_EQ(FailureOf([&] { second->GenerateShader(run.Generator); }),
              "node \"other\" (Surface): \"surfaceAlpha\" is written already: a material has one "
              "surface node");
    EXPECT_FALSE(run.Graph.HasInterfaceNode("surfaceColour", 0)) << "it failed half-way";
}

TEST(SurfacePlugin, StandsBesideTheCoreLibraryAndGoesAfterItsLastNode)
{
    const auto isLoaded = [] {
        void* library = dlopen(MOX_SURFACE_PLUGIN, RTLD_NOW | RTLD_NOLOAD);
        if (library)
            dlclose(library);
        return library != nullptr;
    };
    std::map<std::string, int> rows;
    NodeHandle node;
    {
        Host::PluginSet plugins;
        plugins.Load(MOX_SURFACE_PLUGIN);
        plugins.Load(MOX_CORE_PLUGIN);
        for (const Host::Plugin& plugin : plugins.Plugins()) {
            for (const GuiNodeDescription& row : plugin.Descriptions()) {
                ++rows[row.Library];
                EXPECT_EQ(plugins.CreateNode(row.TypeName)->GetType(), row.TypeName);
            }
        }
        node = plugins.CreateNode("SurfaceFrame");
    }
    EXPECT_EQ(rows, (std::map<std::string, int>{{"Core", 9}, {"Surface", 7}}));
    EXPECT_EQ(FailureOf([&] { ExportRun().Export({node}); }),
              "failed to find interface node \"frame\" (flags=0)");
    EXPECT_TRUE(isLoaded());
    node.reset();
    EXPECT_FALSE(isLoaded());
}

/// Every example ends in a surface, and each parameter that it writes has a value.
TEST_F(SurfaceTest, ExamplesWriteTheirSurface)
{
    const std::map<std::string, std::string> examples = {
        {"flip_book", " surfaceColour surfaceEmission"},
        {"layers_by_vertex_colour", " surfaceColour"},
        {"one_texture_twice", " surfaceColour"},
        {"rim_light", " surfaceColour surfaceEmission"},
        {"tinted_texture", " surfaceColour surfaceNormal"},
        {"waving_flag", " surfaceColour surfaceOffset"},
    };
    for (const auto& [name, expected] : examples) {
        SCOPED_TRACE(name);
        Host::ProblemList problems;
        const auto material =
            Host::OpenMaterial(MOX_TEST_DATA "/../examples/" + name + ".xml", Plugins(), problems);
        Host::GeneratedShader shader;
        AddEnvironment(shader.Graph);
        Host::GenerateShaderGraph(material, shader, problems);
        EXPECT_TRUE(problems.Problems().empty());
        std::string written;
        for (const auto& [key, node] : shader.Graph.InterfaceNodes) {
            if (!node->InEdges.empty())
                written += " " + key.first;
        }
        EXPECT_EQ(written, expected);
    }
}

} // namespace
