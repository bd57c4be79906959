#include "mox/graph/OpenMaterial.h"
#include "tests/support/Failure.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/ProbeNode.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

/// Probes "a" -> "b" -> "c" in a row, a separate "d", and a placeholder "lost" that feeds "d".
MaterialGraph Row()
{
    ProblemList problems;
    return LoadMaterial(MaterialFromText(R"(
        a Probe; Name:string=a
        b Probe; Name:string=b
        c Probe; Name:string=c
        d Probe; Name:string=d
        lost Alien
        a.out -> b.in_1
        b.out -> c.in_1
        lost.anything -> d.in_1
    )"),
                        ProbeMaker(), problems);
}

ProbeNode& Probe(const MaterialGraph& graph, const std::string& id)
{
    return dynamic_cast<ProbeNode&>(*graph.Nodes()[graph.FindNode(id, {})].Gui.Handle());
}

/// An invalid change is refused, and its earlier steps are undone.
TEST(MaterialGraph, RefusalsChangeNothing)
{
    const GraphStep refused[] = {
        Edge("c.out -> a.in_1"),
        Edge("d.out -> lost.in"),
        Edge("a.out -> a.in_1"),
        Edge("a.out -> c.in_1"),
        Edge("a.out -> d.in_1"),
        Edge("a.out -> d.in_9"),
        Edge("a.in_1 -> d.in_2"),
        Edge("a.out -> x.in_2"),
        AddEdge{{"a", "out", "d", "in_2", 0}, "d", "in_2"},
        RemoveEdge{{"d", "out", "b", "in_1", 0}},
        SetPoints{{"d", "out", "b", "in_1", 0, {}, {{1, 2}}}},
        SetPoints{{"a", "out", "b", "in_1", 0, {}, {{1, 10'000'001}}}},
        AddAnnotation{{AnnotationKind::Frame, "f", "", {0, 0}, 10, 0, ""}},
        AddAnnotation{{AnnotationKind::Note, "", "", {0, 0}, 10, 10, ""}},
        SetAnnotation{{AnnotationKind::Frame, "f", "", {0, 0}, 10, 10, ""}},
        RemoveAnnotation{"a"},
        Add("a Probe"),
        AddNode{{"", "Probe", 0, {}, 0}, {}},
        AddNode{{"e", "Probe", 0, {}, 0}, "x"},
        Add("e Bomb"),
        Add("e Probe@1"),
        Add("e Probe; Failure:string=ports are out"),
        RemoveNode{"x"},
        RenameNode{"a", "b"},
        RenameNode{"a", ""},
        Set("a; Failure:string=ports are out"),
        Set("a; Inputs:string=2"),
        Set("a; Inputs:integer=two"),
        Set("a; Type:string=Other"),
        Set("a; Nothing:string="),
        Set("a; Master:node=x"),
        Set("a; Master:node=lost"),
        Set("a; Master:node=a"),
        Set("c; Master:node=a"),
    };
    MaterialGraph graph = Row();
    graph.Apply({{Set("a; Master:node=b")}});
    graph.Apply({{Set("b; Master:node=c")}});
    const std::string before = DescribeGraph(graph);
    std::string refusals;
    for (const GraphStep& step : refused) {
        refusals += GraphChange{{step}}.Format();
        refusals +=
            "  " + HostFailureOf([&] {
                graph.Apply({{Set("c; Inputs:integer=1"), RenameNode{"d", "e2"}, RemoveNode{"b"},
                              RenameNode{"e2", "d"}, AddNode{{"b", "Probe", 0, {}, 0}, "c"},
                              Set("b; Name:string=b"), Set("c; Inputs:integer=2"),
                              Set("b; Master:node=c"), Set("a; Master:node=b"),
                              Edge("a.out -> b.in_1"), Edge("b.out -> c.in_1"), step}});
            }) +
            "\n";
        EXPECT_EQ(DescribeGraph(graph), before) << refusals;
    }
    ExpectGolden("graph/refusals.txt", refusals);
}

TEST(MaterialGraph, PortsAreBuiltOnlyWhereTheyMayChange)
{
    MaterialGraph graph = Row();
    graph.Apply({{Set("c; Master:node=b")}});
    graph.Apply({{Set("d; Master:node=c")}});
    for (const char* id : {"a", "b", "c", "d"})
        Probe(graph, id).PortCalls = 0;
    graph.Apply({{Set("b; PositionX:float=3")}});
    graph.Apply({{Set("b; Inputs:integer=2")}});
    EXPECT_EQ(Probe(graph, "b").PortCalls, 0);
    graph.Apply({{Set("b; Width:integer=3")}});
    EXPECT_EQ(Probe(graph, "a").PortCalls, 0);
    for (const char* id : {"b", "c", "d"})
        EXPECT_EQ(Probe(graph, id).PortCalls, 1);
}

/// What only editors display does not affect nodes, and is restored together with its owner.
TEST(MaterialGraph, AnnotationsAndPointsTouchNoNode)
{
    MaterialGraph graph = Row();
    graph.TakeTouched();
    const std::string start = FormatDocument(graph.Document());
    DocumentAnnotation frame = {AnnotationKind::Frame, "f", "Row", {-10, -10}, 300, 200, ""};
    std::vector<DocumentChange> inverses;
    inverses.push_back(graph.Apply({{AddAnnotation{frame}}}));
    frame.Text = "Line";
    inverses.push_back(graph.Apply(
        {{SetAnnotation{frame}, SetPoints{{"a", "out", "b", "in_1", 0, {}, {{50, 60}}}}}}));
    EXPECT_TRUE(graph.Touched().empty());
    EXPECT_TRUE(graph.Apply({{SetPoints{{"a", "out", "b", "in_1", 0, {}, {{50, 60}}}}}}).IsEmpty());
    const std::string drawn = FormatDocument(graph.Document());
    inverses.push_back(graph.Apply({{RemoveNode{"a"}}}));
    graph.Undo(std::move(inverses.back()));
    EXPECT_EQ(FormatDocument(graph.Document()), drawn);
    inverses.pop_back();
    for (; !inverses.empty(); inverses.pop_back())
        graph.Undo(std::move(inverses.back()));
    EXPECT_EQ(FormatDocument(graph.Document()), start);
}

/// Neither many readers of one output nor a chain that is built from its end makes adding or
/// removing a further edge more expensive.
TEST(MaterialGraph, WideFanAndLongChain)
{
    constexpr int readers = 100000;
    MaterialGraph graph(ProbeMaker());
    GraphChange change{{Add("source Probe")}};
    for (int i = 0; i < readers; ++i) {
        const std::string id = std::to_string(i);
        change.Steps.emplace_back(AddNode{{id, "Probe", 0, {}, 0}, {}});
        if (i > 0) {
            const std::string next = std::to_string(i - 1);
            change.Steps.emplace_back(AddEdge{{id, "out", next, "in_2", 0}, {}, {}});
        }
        change.Steps.emplace_back(AddEdge{{"source", "out", id, "in_1", 0}, {}, {}});
    }
    graph.Apply(change);
    EXPECT_EQ(Probe(graph, "source").OutEdges.size(), static_cast<std::size_t>(readers));
    const DocumentChange inverse = graph.Apply({{RemoveNode{"source"}}});
    EXPECT_EQ(graph.Edges().size(), static_cast<std::size_t>(readers - 1));
    EXPECT_FALSE(Probe(graph, "7").InputPorts[0].Connected);
    graph.Undo(inverse);
    EXPECT_EQ(graph.Edges().size(), static_cast<std::size_t>(2 * readers - 1));
}

} // namespace
