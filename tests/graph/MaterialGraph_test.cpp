#include "mox/graph/MaterialGraph.h"
#include "mox/graph/MaterialSaver.h"
#include "tests/support/GraphText.h"
#include "tests/support/ProbeNode.h"

#include <gtest/gtest.h>

using namespace Mox::Host;
using Mox::Materials::GuiPropertyKind;

namespace {

/// Probes "a" -> "b" -> "c" in a row, "d" beside them, and a placeholder "lost" that feeds "d".
MaterialGraph Row()
{
    MaterialGraph graph(ProbeMaker(), "m.xml");
    for (const char* id : {"a", "b", "c", "d"}) {
        graph.AddNode(id, "Probe");
        graph.SetProperty(id, "Name", id);
    }
    graph.AddNode("lost", "Alien");
    graph.Connect("a", "out", "b", "in_1");
    graph.Connect("b", "out", "c", "in_1");
    graph.Connect("lost", "anything", "d", "in_1");
    return graph;
}

ProbeNode& Probe(const MaterialGraph& graph, const std::string& id)
{
    return dynamic_cast<ProbeNode&>(*graph.Nodes()[graph.FindNode(id, {})].Gui);
}

std::string Describe(const MaterialGraph& graph)
{
    return FormatDocument(SaveMaterial(graph)) + DescribeNodes(graph);
}

GraphStep Edge(const char* tail, const char* tailPort, const char* head, const char* headPort)
{
    return AddEdge{{tail, tailPort, head, headPort, 0}, {}, {}};
}

GraphStep Set(const char* node, const char* name, GuiPropertyKind kind, const char* value)
{
    return SetProperties{{{node, {name, kind, value, 0}}}};
}

constexpr auto reference = GuiPropertyKind::Node;
constexpr auto text = GuiPropertyKind::String;
constexpr auto integer = GuiPropertyKind::Integer;

/// What does not fit is refused, and steps that went well before it are taken back.
TEST(MaterialGraph, RefusalsChangeNothing)
{
    const struct
    {
        GraphStep Step;
        const char* Message;
    } cases[] = {
        {Edge("c", "out", "a", "in_1"),
         "m.xml: edges run in a circle: \"c\" -> \"a\" -> \"b\" -> \"c\""},
        {Edge("d", "out", "lost", "in"),
         "m.xml: edges run in a circle: \"d\" -> \"lost\" -> \"d\""},
        {Edge("a", "out", "a", "in_1"), "m.xml: node \"a\" cannot feed itself"},
        {Edge("a", "out", "c", "in_1"),
         "m.xml: input port \"in_1\" of node \"c\" has an edge already, so output port \"out\" of "
         "node \"a\" cannot feed it too"},
        {Edge("a", "out", "d", "in_1"),
         "m.xml: input port \"in_1\" of node \"d\" has an edge already, so output port \"out\" of "
         "node \"a\" cannot feed it too"},
        {Edge("a", "out", "d", "in_9"),
         "m.xml: node \"d\": node \"d\" (Probe): input port \"in_9\" does not exist"},
        {Edge("a", "in_1", "d", "in_2"),
         "m.xml: node \"a\": node \"a\" (Probe): output port \"in_1\" does not exist"},
        {Edge("a", "out", "x", "in_2"), "m.xml: there is no node \"x\""},
        {AddEdge{{"a", "out", "d", "in_2", 0}, "d", "in_2"},
         "m.xml: no edge feeds input port \"in_2\" of node \"d\""},
        {RemoveEdge{{"d", "out", "b", "in_1", 0}},
         "m.xml: there is no edge from output port \"out\" of node \"d\" to input port \"in_1\" of "
         "node \"b\""},
        {AddNode{{"a", "Probe", 0, {}, 0}, {}, {}},
         "m.xml: node \"a\": another node has this id already"},
        {AddNode{{"", "Probe", 0, {}, 0}, {}, {}}, "m.xml: a node needs an id"},
        {AddNode{{"e", "Probe", 0, {}, 0}, {}, "x"}, "m.xml: there is no node \"x\""},
        {AddNode{{"e", "Bomb", 0, {}, 0}, {}, {}}, "m.xml: node \"e\": no such luck"},
        {AddNode{{"e", "Probe", 1, {}, 0}, {}, {}},
         "m.xml: node \"e\": Cannot convert \"Probe\" version 1 properties into version 0 "
         "properties. Are you running with an old DLL?"},
        {AddNode{{"e", "Probe", 0, {{"Failure", text, "ports are out", 0}}, 0}, {}, {}},
         "m.xml: node \"e\": ports are out"},
        {RemoveNode{"x"}, "m.xml: there is no node \"x\""},
        {RenameNode{"a", "b"}, "m.xml: node \"a\": another node has the id \"b\" already"},
        {RenameNode{"a", ""}, "m.xml: node \"a\": a node needs an id"},
        {Set("a", "Failure", text, "ports are out"), "m.xml: node \"a\": ports are out"},
        {Set("a", "Inputs", text, "2"),
         "m.xml: node \"a\": cannot copy property \"Inputs\" from property with non-matching type"},
        {Set("a", "Inputs", integer, "two"),
         "m.xml: node \"a\": property \"Inputs\": \"two\" is no integer value"},
        {Set("a", "Type", text, "Other"),
         "m.xml: node \"a\": the type of a node cannot be changed"},
        {Set("a", "Nothing", text, ""), "m.xml: node \"a\": failed to find property \"Nothing\""},
        {Set("a", "Master", reference, "x"), "m.xml: node \"a\": there is no node \"x\""},
        {Set("a", "Master", reference, "lost"),
         "m.xml: node \"a\": cannot copy property \"Master\" as node typename \"Alien\" is not a "
         "valid typename"},
        {Set("a", "Master", reference, "a"),
         "m.xml: node \"a\": references run in a circle: \"a\" -> \"a\""},
        {Set("c", "Master", reference, "a"),
         "m.xml: node \"c\": references run in a circle: \"c\" -> \"a\" -> \"b\" -> \"c\""},
    };
    MaterialGraph graph = Row();
    graph.SetProperty("a", "Master", "b");
    graph.SetProperty("b", "Master", "c");
    const std::string before = Describe(graph);
    for (const auto& [step, message] : cases) {
        SCOPED_TRACE(GraphChange{{step}}.Format());
        EXPECT_EQ(
            HostFailureOf([&] {
                graph.Apply(
                    {{Set("c", "Inputs", integer, "1"), RenameNode{"d", "e2"}, RemoveNode{"b"},
                      RenameNode{"e2", "d"}, AddNode{{"b", "Probe", 0, {}, 0}, {}, "c"},
                      Set("b", "Name", text, "b"), Set("c", "Inputs", integer, "2"),
                      Set("b", "Master", reference, "c"), Set("a", "Master", reference, "b"),
                      Edge("a", "out", "b", "in_1"), Edge("b", "out", "c", "in_1"), step}});
            }),
            message);
        EXPECT_EQ(Describe(graph), before);
    }
}

TEST(MaterialGraph, EdgesOfVanishedPortsComeBack)
{
    MaterialGraph graph = Row();
    graph.Connect("d", "out", "c", "in_2");
    graph.SetProperty("c", "Master", "b");
    const std::string before = Describe(graph);
    // The number of inputs of "b" decides on that of "c", which refers to it.
    const GraphChange inverse = graph.SetProperty("b", "Inputs", "1");
    EXPECT_EQ(Probe(graph, "c").InEdges.size(), 1u);
    EXPECT_FALSE(Probe(graph, "d").OutputPorts[0].Connected);
    EXPECT_EQ(inverse.Format(), "set node \"b\" \"Inputs\" = integer \"2\"\n"
                                "set node \"c\" \"Inputs\" = integer \"2\"\n"
                                "add edge \"d\" port \"out\" -> \"c\" port \"in_2\"\n");
    const GraphChange again = graph.Apply(inverse);
    EXPECT_EQ(Describe(graph), before);
    graph.Apply(again);
    graph.Apply(graph.SetProperty("b", "Inputs", "0"));
    EXPECT_EQ(Probe(graph, "b").InputPorts.size(), 1u);
}

TEST(MaterialGraph, RemovalEmptiesReferencesAndComesBackInPlace)
{
    MaterialGraph graph = Row();
    graph.SetProperty("c", "Master", "b");
    graph.SetProperty("d", "Master", "b");
    graph.SetProperty("b", "PositionX", "1.5");
    const std::string before = Describe(graph);
    const GraphChange inverse = graph.RemoveNode("b");
    EXPECT_FALSE(Probe(graph, "c").Master->Node);
    EXPECT_EQ(graph.Nodes().size(), 4u);
    EXPECT_EQ(graph.Edges().size(), 1u);
    graph.Apply(inverse);
    EXPECT_EQ(Describe(graph), before);
}

TEST(MaterialGraph, PortsAreBuiltOnlyWhereTheyMayChange)
{
    MaterialGraph graph = Row();
    graph.SetProperty("c", "Master", "b");
    graph.SetProperty("d", "Master", "c");
    for (const char* id : {"a", "b", "c", "d"})
        Probe(graph, id).PortCalls = 0;
    graph.SetProperty("b", "PositionX", "3");
    graph.SetProperty("b", "Inputs", "2");
    EXPECT_EQ(Probe(graph, "b").PortCalls, 0);
    graph.SetProperty("b", "Width", "3");
    EXPECT_EQ(Probe(graph, "a").PortCalls, 0);
    for (const char* id : {"b", "c", "d"})
        EXPECT_EQ(Probe(graph, id).PortCalls, 1);
}

/// Edges, references and values stand the loss of a type, and edits of what a placeholder shows.
TEST(MaterialGraph, PlaceholdersKeepWhatTheyDoNotShow)
{
    MaterialGraph graph = Row();
    const AddNode alien{{"alien",
                         "Alien",
                         7,
                         {{"Description", text, "mine", 3},
                          {"Twist", GuiPropertyKind::Colour, "1 2 3", 4},
                          {"Twin", reference, "a", 5}},
                         2},
                        {},
                        "c"};
    graph.Apply({{alien, Edge("alien", "o", "d", "in_2"), Edge("a", "out", "alien", "i")}});
    const std::string before = Describe(graph);
    std::vector<GraphChange> inverses;
    inverses.push_back(graph.SetProperty("alien", "PositionY", "2"));
    inverses.push_back(graph.RenameNode("a", "first"));
    inverses.push_back(graph.SetProperty("alien", "Twist", "0 0 1"));
    const std::string saved = FormatDocument(SaveMaterial(graph));
    EXPECT_NE(saved.find("node alien Alien 7\n  PositionY float 2\n  Description string mine\n"
                         "  Twist colour 0 0 1\n  Twin node first\n"),
              std::string::npos)
        << saved;
    inverses.push_back(graph.RemoveNode("first"));
    EXPECT_NE(FormatDocument(SaveMaterial(graph)).find("  Twin node \n"), std::string::npos);
    inverses.push_back(graph.RemoveNode("alien"));
    for (auto inverse = inverses.rbegin(); inverse != inverses.rend(); ++inverse)
        graph.Apply(*inverse);
    EXPECT_EQ(Describe(graph), before);
}

/// One output with very many readers must not make each further edge, or its removal, dearer.
TEST(MaterialGraph, WideFan)
{
    constexpr int readers = 100000;
    MaterialGraph graph(ProbeMaker());
    GraphChange change;
    change.Steps.emplace_back(AddNode{{"source", "Probe", 0, {}, 0}, {}, {}});
    for (int i = 0; i < readers; ++i) {
        const std::string id = std::to_string(i);
        change.Steps.emplace_back(AddNode{{id, "Probe", 0, {}, 0}, {}, {}});
        change.Steps.emplace_back(AddEdge{{"source", "out", id, "in_1", 0}, {}, {}});
    }
    graph.Apply(change);
    EXPECT_EQ(Probe(graph, "source").OutEdges.size(), static_cast<std::size_t>(readers));
    const GraphChange inverse = graph.RemoveNode("source");
    EXPECT_EQ(graph.Edges().size(), 0u);
    EXPECT_FALSE(Probe(graph, "7").InputPorts[0].Connected);
    graph.Apply(inverse);
    EXPECT_EQ(graph.Edges().size(), static_cast<std::size_t>(readers));
}

} // namespace
