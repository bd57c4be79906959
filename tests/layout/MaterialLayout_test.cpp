#include "mox/graph/ChangeHistory.h"
#include "mox/layout/MaterialLayout.h"
#include "tests/support/BuildTree.h"
#include "tests/support/GraphText.h"
#include "tests/support/RandomMaterial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace Mox::Host;

namespace {

using Mox::Materials::GuiPropertyKind;

/// Everything of a document but for the positions of some nodes.
std::string WithoutPositions(MaterialDocument document, const std::set<std::string>& ids)
{
    for (DocumentNode& node : document.Nodes) {
        std::erase_if(node.Properties, [&](const DocumentProperty& property) {
            return ids.contains(node.Id) && property.Name.starts_with("Position");
        });
    }
    return FormatDocument(document);
}

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
    history.Do(LayOutMaterial(graph, {some.begin(), some.end()}));
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

} // namespace
