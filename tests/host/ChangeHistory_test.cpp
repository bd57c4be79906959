#include "mox/Text.h"
#include "mox/host/ChangeHistory.h"
#include "mox/host/GraphCopy.h"
#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialLoader.h"
#include "mox/host/MaterialSaver.h"
#include "tests/support/GraphText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>

using namespace Mox;
using namespace Mox::Host;
using Materials::Compose;
using Materials::GuiPropertyKind;

namespace {

struct Setting
{
    const char* Property;
    GuiPropertyKind Kind;
    const char* Value;
};

constexpr auto e = GuiPropertyKind::Enum;
constexpr auto i = GuiPropertyKind::Integer;
constexpr auto b = GuiPropertyKind::Bool;

/// Some fit one type, some another, some none.
constexpr Setting settings[] = {
    {"Function", e, "Clamp"},
    {"Function", e, "Blend"},
    {"Function", e, "Lerp"},
    {"Function", e, "Fresnel"},
    {"Function", e, "Multiply"},
    {"Vector Type", e, "Uv"},
    {"Vector Type", e, "Vector"},
    {"Vector Type", e, "Colour"},
    {"Component Count", i, "2"},
    {"Component Count", i, "4"},
    {"Component Count", i, "7"},
    {"Reverse", b, "true"},
    {"Reverse", b, "false"},
    {"Constant Type", e, "Scalar"},
    {"Constant Type", e, "Vector"},
    {"Constant Type", e, "Component"},
    {"Alpha", b, "true"},
    {"Alpha", b, "false"},
    {"Colour Type", e, "Vector"},
    {"Colour Type", e, "Normal"},
    {"Colour Type", e, "Component"},
    {"Texture Type", e, "1D"},
    {"Mode", e, "Advanced"},
    {"Mode", e, "Basic"},
    {"Mode", e, "Screen"},
    {"PositionX", GuiPropertyKind::Float, "-0"},
    {"Name", GuiPropertyKind::String, " a\n\"b\""},
    {"Default Min", GuiPropertyKind::Float, "1e-45"},
    {"Description", GuiPropertyKind::String, "notes"},
    {"Default Colour", GuiPropertyKind::Colour, "0.1 nan -inf"},
};

constexpr const char* types[] = {"CoreMaths",    "CoreMaths",   "CoreLayerBlend", "CoreSwizzle",
                                 "CoreConstant", "CoreTexture", "CoreTexture",    "CoreAnimatedUv",
                                 "CoreUv",       "NoSuchType"};

/// Random changes of a graph, more or less sensible ones.
class RandomEditor
{
public:
    RandomEditor(const MaterialGraph& graph, unsigned seed) : _graph(graph), _random(seed) {}

    GraphChange Next()
    {
        switch (Below(20)) {
        case 0:
        case 1:
            return {{AddNode{StoredNode(), {}, Below(2) ? "" : AnyId()}}};
        case 2:
            return {{RemoveNode{AnyId()}}};
        case 3:
            return {{RenameNode{AnyId(), Compose("n", Below(40))}}};
        case 4:
            return CopyNodes(_graph, {AnyId(), AnyId(), AnyId()}, _graph);
        case 5:
            return RemoveSomeEdge();
        case 6:
            return {{SetProperties{
                {{AnyId(), {"Reference", GuiPropertyKind::Node, Below(4) ? AnyId() : ""}}}}}};
        case 7:
        case 8:
            return {{SetProperties{{AnySetting(), AnySetting()}}}};
        case 9:
            return {{SetProperties{{AnySetting()}}}};
        default:
            return AddSomeEdge();
        }
    }

private:
    std::size_t Below(std::size_t end)
    {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(_random);
    }

    const MaterialGraph::Node& AnyNode()
    {
        auto node = _graph.Nodes().begin();
        std::advance(node, Below(_graph.Nodes().size()));
        return *node;
    }

    std::string AnyId() { return AnyNode().Id; }

    DocumentNode StoredNode()
    {
        DocumentNode node{Compose("n", Below(40)), types[Below(std::size(types))], 0, {}, 0};
        while (Below(3) == 0) {
            const Setting& setting = settings[Below(std::size(settings))];
            node.Properties.push_back({setting.Property, setting.Kind, setting.Value});
        }
        if (Below(3) == 0)
            node.Properties.push_back({"Elsewhere", GuiPropertyKind::Node, AnyId()});
        return node;
    }

    PropertySetting AnySetting()
    {
        const Setting& setting = settings[Below(std::size(settings))];
        return {AnyId(), {setting.Property, setting.Kind, setting.Value}};
    }

    std::string AnyPort(const std::vector<Materials::GuiPort>& ports)
    {
        return ports.empty() ? Compose("p", Below(3)) : ports[Below(ports.size())].Name;
    }

    GraphChange AddSomeEdge()
    {
        const MaterialGraph::Node& tail = AnyNode();
        const MaterialGraph::Node& head = AnyNode();
        return {{AddEdge{
            {tail.Id, AnyPort(tail.Gui->OutputPorts), head.Id, AnyPort(head.Gui->InputPorts)},
            {},
            {}}}};
    }

    GraphChange RemoveSomeEdge()
    {
        if (_graph.Edges().size() == 0)
            return {};
        auto edge = _graph.Edges().begin();
        std::advance(edge, Below(_graph.Edges().size()));
        return {{RemoveEdge{_graph.Store().Describe(*edge)}}};
    }

    const MaterialGraph& _graph;
    std::mt19937 _random;
};

unsigned FirstSeed()
{
    const char* text = std::getenv("MOX_TEST_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 1;
}

PluginSet CorePlugins()
{
    PluginSet plugins;
    plugins.Load(MOX_CORE_PLUGIN);
    return plugins;
}

/// Ports must be set and edges listed as the edges of the graph say.
void ExpectAgreement(const MaterialGraph& graph)
{
    std::map<const Materials::GuiPort*, bool> isConnected;
    std::map<const Materials::GuiNode*, std::pair<std::size_t, std::size_t>> edges;
    for (const MaterialGraph::Edge& edge : graph.Edges()) {
        if (graph.IsLoose(edge))
            continue;
        auto& tail = *graph.Nodes()[edge.Tail].Gui;
        auto& head = *graph.Nodes()[edge.Head].Gui;
        isConnected[&tail.GetOutputPort(edge.Gui->TailPort)] = true;
        isConnected[&head.GetInputPort(edge.Gui->HeadPort)] = true;
        ++edges[&tail].second;
        ++edges[&head].first;
        EXPECT_LT(graph.Store().Order().Position(edge.Tail),
                  graph.Store().Order().Position(edge.Head));
    }
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        EXPECT_EQ(node.Gui->InEdges.size(), edges[node.Gui.get()].first);
        EXPECT_EQ(node.Gui->OutEdges.size(), edges[node.Gui.get()].second);
        for (const auto* ports : {&node.Gui->InputPorts, &node.Gui->OutputPorts}) {
            for (const Materials::GuiPort& port : *ports)
                EXPECT_EQ(port.Connected, isConnected[&port]) << node.Id << " " << port.Name;
        }
    }
}

std::string ResolveAnew(MaterialGraph& graph)
{
    ProblemList problems;
    GraphResolver(graph).Resolve(problems);
    return DescribeNodes(graph);
}

TEST(ChangeHistory, RandomEditsEndWhereTheyBegan)
{
    constexpr unsigned runs = 30;
    constexpr int editsOfRun = 150;
    const unsigned firstSeed = FirstSeed();
    std::cout << "seeds from " << firstSeed << " (MOX_TEST_SEED)\n";
    int done = 0;
    int refused = 0;
    const PluginSet plugins = CorePlugins();
    for (unsigned seed = firstSeed; seed < firstSeed + runs && !HasFailure(); ++seed) {
        SCOPED_TRACE(Compose("seed ", seed));
        ProblemList problems;
        MaterialGraph graph = LoadMaterial(
            ReadMaterialDocument(MOX_TEST_DATA "/../examples/flip_book.xml"), plugins, problems);
        GraphResolver resolver(graph);
        resolver.Resolve(problems);
        const std::string start = FormatDocument(SaveMaterial(graph));
        const std::string startNodes = DescribeNodes(graph);
        ChangeHistory history(graph);
        RandomEditor editor(graph, seed);
        for (int edit = 0; edit < editsOfRun && !HasFailure(); ++edit) {
            const std::string before = FormatDocument(SaveMaterial(graph));
            const std::string nodesBefore = DescribeNodes(graph);
            const GraphChange change = editor.Next();
            SCOPED_TRACE(change.Format());
            bool isRefused = false;
            try {
                history.Do(change);
                ++done;
            } catch (const HostError&) {
                isRefused = true;
                ++refused;
            }
            if (isRefused) {
                EXPECT_EQ(FormatDocument(SaveMaterial(graph)), before);
                EXPECT_EQ(DescribeNodes(graph), nodesBefore);
            }
            ExpectAgreement(graph);
            resolver.Resolve(problems);
            const std::string incremental = DescribeNodes(graph);
            EXPECT_EQ(incremental, ResolveAnew(graph));
            if (edit % 8 == 0 && FormatDocument(SaveMaterial(graph)) != before) {
                history.Undo();
                EXPECT_EQ(FormatDocument(SaveMaterial(graph)), before);
                history.Redo();
                resolver.Resolve(problems);
                EXPECT_EQ(DescribeNodes(graph), incremental);
            }
            if (graph.Nodes().size() == 0)
                history.Undo();
        }
        const MaterialDocument saved = SaveMaterial(graph);
        const std::string end = FormatDocument(saved);
        const std::string endNodes = DescribeNodes(graph);
        ProblemList reloadProblems;
        MaterialGraph reloaded = LoadMaterial(saved, plugins, reloadProblems);
        EXPECT_FALSE(reloadProblems.HasErrors()) << FormatProblems(reloadProblems);
        EXPECT_EQ(ResolveAnew(reloaded), endNodes);
        EXPECT_EQ(FormatDocument(SaveMaterial(reloaded)), end);

        while (history.CanUndo())
            history.Undo();
        resolver.Resolve(problems);
        EXPECT_EQ(FormatDocument(SaveMaterial(graph)), start);
        EXPECT_EQ(DescribeNodes(graph), startNodes);
        while (history.CanRedo())
            history.Redo();
        resolver.Resolve(problems);
        EXPECT_EQ(FormatDocument(SaveMaterial(graph)), end);
        EXPECT_EQ(DescribeNodes(graph), endNodes);
    }
    std::cout << done << " edits done, " << refused << " refused\n";
    EXPECT_GT(done, refused / 4);
}

} // namespace
