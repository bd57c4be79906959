#include "mox/document/Catalogue.h"
#include "mox/graph/OpenMaterial.h"
#include "tests/support/BuildTree.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/NodeText.h"

#include <gtest/gtest.h>

using namespace Mox;
using namespace Mox::Host;

namespace {

/// Formats the fragment of a node that was loaded from a document with the given fragment.
std::string LoadAndFormat(const std::string& fragment)
{
    ProblemList problems;
    const MaterialDocument document = ParseMaterialDocument(
        "x.xml", "<material version=\"1\"><nodes>" + fragment + "</nodes><edges/></material>",
        problems);
    const MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
    EXPECT_EQ(FormatProblems(problems), "");
    const auto& node = *graph.Nodes().begin();
    return FormatNodeFragment(node.Gui, node.Id);
}

TEST(NodeFragment, LoadsBackTheSame)
{
    int count = 0;
    for (const Plugin& plugin : TestPlugins().Plugins()) {
        for (const auto& row : plugin.Types()) {
            if (!row.Listed) // placeholders rewrite their description
                continue;
            ++count;
            const PluginNode made = plugin.CreateNode(row.TypeName);
            const auto& node = made.Handle();
            const std::string fresh = FormatNodeFragment(made, "id");
            EXPECT_EQ(LoadAndFormat(fresh), fresh);

            node->SetName("a <b> & \"c\"\t\xc3\xa9");
            ApplySettings(*node, "PositionX=0.1; PositionY=-1e-30; BindingIndex=-2147483648");
            node->Description->SetString("two\r\nlines");
            const std::string odd = FormatNodeFragment(made, "id & more");
            EXPECT_EQ(LoadAndFormat(odd), odd);
            EXPECT_NE(odd, fresh);
        }
    }
    EXPECT_GT(count, 15) << "the compiled types, and those of node files";
}

} // namespace
