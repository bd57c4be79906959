#include "mox/Text.h"
#include "mox/xml/XmlTree.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Mox::Host;
using Mox::Materials::Compose;

std::string Describe(const XmlTree& tree)
{
    std::string text = Compose(tree.Name, "@", tree.Where.Line);
    for (const XmlTree::Attribute& attribute : tree.Attributes)
        text += Compose(" ", attribute.Name, "=[", attribute.Value, "]");
    text += Compose(" [", tree.Text, "]@", tree.WhereText.Line);
    for (const XmlTree& child : tree.Children)
        text += " {" + Describe(child) + "}";
    return text;
}

TEST(XmlTree, HoldsElementsAttributesTextsAndLines)
{
    const TemporaryFolder folder;
    const auto file = folder.Write("a.xml", "<?b?><!-- c -->\n<q:a xmlns:q='u'\n q:x='&lt;&#10;'>\n"
                                            "<b/>one<!-- two --><![CDATA[<3>]]>\n<?four?><c\n>"
                                            "\n</c></q:a>\n<!-- end -->");
    const XmlTree tree = ReadXmlTree(file);
    EXPECT_EQ(Describe(tree), "q:a@2 xmlns:q=[u] q:x=[<\n] [\none<3>\n]@4 {b@4 []@0} {c@5 [\n]@0}");
    EXPECT_EQ(tree.Where.File, file.string());
    EXPECT_EQ(*tree.Find("q:x"), "<\n");
    EXPECT_EQ(tree.Find("x"), nullptr);
}

} // namespace
