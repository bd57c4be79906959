#include "mox/graph/GraphCopy.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/ProbeNode.h"

#include <gtest/gtest.h>

using namespace Mox::Host;
using Mox::Materials::GuiPropertyKind;

namespace {

/// "rim" feeds "rim2"; "rim" refers to "rim2", which refers to "out", which is not copied; "x9" is
/// a placeholder that refers to "rim" by a property that is only in the document, and feeds "rim2".
MaterialGraph Source()
{
    MaterialGraph graph(ProbeMaker());
    for (const char* id : {"rim", "out", "rim2"})
        graph.Apply({{AddNode{{id, "Probe", 0, {}}, {}}}});
    graph.Apply({{Set("rim; PositionX:float=0.1")}});
    graph.Apply({{Set("rim2; Master:node=out")}});
    graph.Apply({{Set("rim; Master:node=rim2")}});
    graph.Apply(
        {{AddNode{{"x9", "Alien", 2, {{"Twin", GuiPropertyKind::Node, "rim", 0}}, 0}, {}}}});
    graph.Apply({{AddEdge{{"rim", "out", "rim2", "in_1", 0, {}, {{3, 4}}}, {}, {}}}});
    for (const char* id : {"f", "g"})
        graph.Apply({{AddAnnotation{{AnnotationKind::Frame, id, "Rim", {1, 2}, 30, 40, ""}}}});
    graph.Apply({{Edge("x9.o -> rim2.in_2")}});
    graph.Apply({{Edge("rim2.out -> out.in_1")}});
    return graph;
}

const GraphParts part = {{"rim2", "x9", "rim"}, {"f"}};

TEST(GraphCopy, WithinAMaterial)
{
    MaterialGraph graph = Source();
    const std::string before = FormatDocument(graph.Document());
    const DocumentChange inverse = graph.Apply(CopyParts(graph, part, graph));
    const std::string after = FormatDocument(graph.Document());
    const std::string nodes = before.substr(0, before.find("edge "));
    const std::string edges =
        before.substr(nodes.size(), before.find("annotation ") - nodes.size());
    const std::string annotations = before.substr(nodes.size() + edges.size());
    EXPECT_EQ(after, nodes +
                         "node rim3 Probe 0\n  PositionX float 0.1\n  Master node rim4\n"
                         "node rim4 Probe 0\n"
                         "node x10 Alien 2\n  Twin node rim3\n" +
                         edges + "edge rim3 out rim4 in_1 3,4\nedge x10 o rim4 in_2\n" +
                         annotations +
                         "annotation id=f2 kind=frame text=Rim x=1 y=2 width=30 height=40\n");
    graph.Undo(inverse);
    EXPECT_EQ(FormatDocument(graph.Document()), before);
    EXPECT_THROW(CopyParts(graph, {{"nobody"}, {}}, graph), HostError);
    EXPECT_THROW(CopyParts(graph, {{}, {"rim"}}, graph), HostError);
}

TEST(GraphCopy, IntoAnotherMaterial)
{
    const MaterialGraph source = Source();
    MaterialGraph target(ProbeMaker());
    target.Apply({{AddNode{{"x9", "Probe", 0, {}}, {}}}});
    target.Apply(CopyParts(source, part, target));
    EXPECT_EQ(FormatDocument(target.Document()),
              "node x9 Probe 0\n"
              "node rim Probe 0\n  PositionX float 0.1\n  Master node rim2\n"
              "node rim2 Probe 0\n"
              "node x10 Alien 2\n  Twin node rim\n"
              "edge rim out rim2 in_1 3,4\nedge x10 o rim2 in_2\n"
              "annotation id=f kind=frame text=Rim x=1 y=2 width=30 height=40\n");
}

} // namespace
