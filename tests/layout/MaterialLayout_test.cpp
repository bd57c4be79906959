#include "mox/graph/ChangeHistory.h"
#include "mox/layout/FramePlan.h"
#include "mox/layout/MaterialLayout.h"
#include "mox/layout/NodeShape.h"
#include "tests/support/BuildTree.h"
#include "tests/support/GraphText.h"
#include "tests/support/RandomMaterial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace Mox::Host;

namespace {

using Mox::Materials::GuiPropertyKind;

/// Formats a document without the positions of the given nodes.
std::string WithoutPositions(MaterialDocument document, const std::set<std::string>& ids)
{
    for (DocumentNode& node : document.Nodes) {
        std::erase_if(node.Properties, [&](const DocumentProperty& property) {
            return ids.contains(node.Id) && property.Name.starts_with("Position");
        });
    }
    return FormatDocument(document);
}

struct LayoutBox
{
    int X, Y, Width, Height;

    bool Contains(const LayoutBox& other) const
    {
        return X < other.X && Y < other.Y && other.X + other.Width < X + Width &&
               other.Y + other.Height < Y + Height;
    }
    bool Overlaps(const LayoutBox& other) const
    {
        return X < other.X + other.Width && other.X < X + Width && Y < other.Y + other.Height &&
               other.Y < Y + Height;
    }
};

TEST(MaterialLayout, MovesTheChosenNodesOnlyAndCanBeUndone)
{
    const MaterialDocument start = MakeRandomMaterial(3, 30);
    std::set<std::string> some;
    std::set<std::string> all;
    for (const DocumentNode& node : start.Nodes) {
        if (some.size() < 7)
            some.insert(node.Id);
        all.insert(node.Id);
    }
    MaterialGraph graph(start, NodeMaker(TestPlugins()));
    ChangeHistory history(graph);
    history.Do(LayOutMaterial(graph));
    EXPECT_TRUE(LayOutMaterial(graph).Steps.empty());
    EXPECT_EQ(WithoutPositions(graph.Document(), all), WithoutPositions(start, all));

    history.Do({{SetProperties{{{*some.begin(), {"PositionX", GuiPropertyKind::Float, "-300"}}}}}});
    const MaterialDocument before = graph.Document();
    history.Do(LayOutMaterial(graph, {{some.begin(), some.end()}, {}}));
    EXPECT_NE(FormatDocument(graph.Document()), FormatDocument(before));
    EXPECT_EQ(WithoutPositions(graph.Document(), some), WithoutPositions(before, some));
    float left = 0;
    for (const std::string& id : some) {
        const std::size_t node = graph.FindNode(id, {});
        left = std::min(left, graph.Nodes()[node].Gui.Properties().Get("PositionX")->Floats[0]);
    }
    EXPECT_EQ(left, -300);

    while (history.CanUndo())
        history.Undo();
    EXPECT_EQ(FormatDocument(graph.Document()), FormatDocument(start));
}

DocumentNode At(const char* id, const char* x)
{
    return {id, "CoreMaths", 0, {{"PositionX", GuiPropertyKind::Float, x}}};
}

/// "inner", inside "outer", contains "c"; "outer" also contains "a"; "b" is outside, between "a"
/// and "c".
MaterialDocument Framed()
{
    MaterialDocument document;
    for (const DocumentNode& node : {At("a", "10"), At("b", "5000"), At("c", "210")})
        document.Nodes.push_back(node);
    document.Edges.push_back({"a", "out_value", "b", "in_value1", 0, {}, {{7, 7}}});
    document.Edges.push_back({"b", "out_value", "c", "in_value1"});
    document.Edges.push_back({"a", "out_value", "c", "in_value2"});
    const auto add = [&](AnnotationKind kind, const char* id, int x, int side) {
        document.Annotations.push_back({kind, id, "", {x, -20}, side, side, ""});
    };
    add(AnnotationKind::Frame, "outer", 0, 900);
    add(AnnotationKind::Frame, "inner", 200, 300);
    add(AnnotationKind::Note, "note", 20, 60);
    add(AnnotationKind::Frame, "empty", 9000, 40);
    return document;
}

/// The rectangle of a node or annotation.
LayoutBox BoxOf(const MaterialGraph& graph, const std::string& id)
{
    for (const DocumentAnnotation& item : graph.Document().Annotations) {
        if (item.Id == id)
            return {item.Corner.X, item.Corner.Y, item.Width, item.Height};
    }
    const GraphNode& node = graph.Nodes()[graph.FindNode(id, {})];
    return {int(CornerOf(node).X), int(CornerOf(node).Y), int(ShapeOf(node).Width),
            int(ShapeOf(node).Height)};
}

TEST(MaterialLayout, FramesStayAroundWhatIsInThem)
{
    MaterialGraph graph(Framed(), NodeMaker(TestPlugins()));
    const DocumentChange inverse = graph.Apply(LayOutMaterial(graph));
    EXPECT_TRUE(LayOutMaterial(graph).Steps.empty());
    const std::vector<std::string> ids = {"a", "b", "c", "outer", "inner", "note", "empty"};
    const std::set<std::pair<std::string, std::string>> inside = {
        {"outer", "a"}, {"outer", "inner"}, {"outer", "c"}, {"inner", "c"}, {"outer", "note"}};
    for (const std::string& first : ids) {
        for (const std::string& second : ids) {
            const LayoutBox a = BoxOf(graph, first);
            const LayoutBox b = BoxOf(graph, second);
            const bool isInside = inside.contains({first, second});
            const bool isApart = first != second && !isInside && !inside.contains({second, first});
            EXPECT_TRUE(!isInside || a.Contains(b)) << first << " " << second;
            EXPECT_TRUE(!isApart || !a.Overlaps(b)) << first << " " << second;
        }
    }
    EXPECT_EQ(BoxOf(graph, "empty").Width, 40);
    EXPECT_TRUE(graph.Document().Edges[0].Points.empty());
    graph.Undo(inverse);
    EXPECT_EQ(FormatDocument(graph.Document()), FormatDocument(Framed()));

    // Selected nodes are laid out without their frames.
    graph.Apply(LayOutMaterial(graph, {{"a", "c"}, {}}));
    EXPECT_EQ(BoxOf(graph, "outer").Width, 900);
    EXPECT_EQ(BoxOf(graph, "a").X, 10);
    EXPECT_EQ(BoxOf(graph, "b").X, 5000);
    EXPECT_TRUE(graph.Document().Edges[0].Points.empty()) << "one end of the edge moved";
}

TEST(MaterialLayout, DoesNotDependOnTheOrderInWhichNodesCame)
{
    MaterialGraph drawn({}, NodeMaker(TestPlugins())); // from the output backwards, as artists do
    for (const std::string name : {"first", "second"}) {
        drawn.Apply({{AddNode{{name, "CoreTexture", 0, {}}, ""}}});
        drawn.Apply({{AddNode{{name + "Uv", "CoreUv", 0, {}}, ""},
                      AddEdge{{name + "Uv", "read", name, "in_uv"}, "", ""}}});
    }
    MaterialGraph read(drawn.Document(), NodeMaker(TestPlugins()));
    for (MaterialGraph* graph : {&drawn, &read})
        graph->Apply(LayOutMaterial(*graph));
    EXPECT_EQ(FormatDocument(drawn.Document()), FormatDocument(read.Document()));
    EXPECT_LT(BoxOf(drawn, "secondUv").X, BoxOf(drawn, "second").X);
}

} // namespace
