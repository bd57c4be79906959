#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/pictures/Colour.h"
#include "mox/pictures/DotText.h"
#include "mox/pictures/Graphviz.h"
#include "mox/pictures/MaterialPicture.h"
#include "mox/pictures/ShaderPicture.h"
#include "mox/program/MaterialProgram.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Golden.h"
#include "tests/support/MaterialText.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <functional>
#include <limits>
#include <memory>

using namespace Mox;
using namespace Mox::Host;
using Materials::Compose;

namespace {

constexpr const char* wrong = R"(
    uv CoreUv
    paint CoreTexture
    product CoreMaths
    surface Surface
    uv.read -> paint.in_uv
    paint.out_colour -> product.in_value1
    uv.read -> product.in_value2
    product.out_value -> surface.in_colour
)";

Drawing DrawDocument(const MaterialDocument& document, ProblemList& problems)
{
    MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    return DrawMaterial(graph, problems,
                        IconsOfNodes(graph, TestPlugins(), NodeFiles(TestPlugins())));
}

Drawing DrawExampleShader(const std::string& name)
{
    ProblemList problems;
    const MaterialGraph graph =
        OpenMaterial(Compose(MOX_EXAMPLES "/", name, ".xml"), TestPlugins(), problems);
    GeneratedShader shader;
    CompleteShader(graph, TestEnvironment(), shader, problems);
    return DrawShader(shader, problems);
}

std::string Take(xmlChar* text)
{
    const std::unique_ptr<xmlChar, decltype(xmlFree)> owner(text, xmlFree);
    return text ? reinterpret_cast<const char*>(text) : "";
}

/// The visible content of an SVG: its labels and tooltips in order, one per line.
std::string DescribeSvg(const std::string& svg)
{
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(svg.data(), static_cast<int>(svg.size()), nullptr, nullptr, XML_PARSE_NONET),
        xmlFreeDoc);
    if (!document)
        return "not well-formed";
    std::string texts;
    const std::function<void(xmlNode*)> visit = [&](xmlNode* element) {
        const std::string name = reinterpret_cast<const char*>(element->name);
        if (name == "a")
            texts += "tooltip " + Take(xmlGetProp(element, BAD_CAST "title")) + "\n";
        if (name == "text")
            texts += "text " + Take(xmlNodeGetContent(element)) + "\n";
        for (xmlNode* child = xmlFirstElementChild(element); child;
             child = xmlNextElementSibling(child))
            visit(child);
    };
    visit(xmlDocGetRootElement(document.get()));
    return texts;
}

TEST(Pictures, OfAnExample)
{
    ProblemList problems;
    const Drawing picture =
        DrawDocument(ReadMaterialDocument(MOX_EXAMPLES "/tinted_texture.xml"), problems);
    ExpectGolden("pictures/tinted_texture.dot", picture.Dot);
    EXPECT_EQ(picture.Images.size(), 6u);
}

TEST(Pictures, AreTheSameEachTimeAndHoldTheirImages)
{
    ProblemList problems;
    const MaterialDocument document = ReadMaterialDocument(MOX_EXAMPLES "/flip_book.xml");
    const Drawing picture = DrawDocument(document, problems);
    const Drawing again = DrawDocument(document, problems);
    EXPECT_EQ(picture.Dot, again.Dot);
    EXPECT_EQ(DrawExampleShader("waving_flag").Dot, DrawExampleShader("waving_flag").Dot);

    const std::string svg = RenderPicture(picture, PictureFormat::Svg);
    EXPECT_EQ(svg, RenderPicture(again, PictureFormat::Svg));
    EXPECT_EQ(svg.find(".png\""), std::string::npos);
    std::size_t images = 0;
    for (std::size_t i = 0;
         (i = svg.find("href=\"data:image/png;base64,iVBORw0KGgo", i)) != std::string::npos; ++i)
        ++images;
    EXPECT_EQ(images, picture.Images.size());
    EXPECT_EQ(RenderPicture(picture, PictureFormat::Png).substr(0, 8), "\x89PNG\r\n\x1a\n");

    // An image of a different size with the same name counts as different.
    Drawing larger = picture;
    larger.Images.begin()->second = {2, 1, std::vector<std::uint8_t>(8, 0xff)};
    EXPECT_NE(RenderPicture(larger, PictureFormat::Svg), svg);
}

TEST(Pictures, ShowEveryNameAsItStands)
{
    const std::string names[] = {"\"quoted\" 'too'",
                                 "<b>&amp;</b>",
                                 "&lt; &#65; &copy;",
                                 R"(back\slash \N \n \\ \)",
                                 "two\nlines\rthree\r\nfour",
                                 "tab\tand \xc3\xa9\xe2\x82\xac\xf0\x9f\x8e\xa8",
                                 "-->",
                                 "]]>",
                                 "a:b;c{d}|e",
                                 "\\",
                                 "%n %s",
                                 "digraph",
                                 " "};
    // Invalid characters are shown as replacement characters.
    EXPECT_EQ(EscapeLabel(std::string("a\x01\xff\xc3\0z\xef\xbf\xbf", 9)),
              "a\uFFFD\uFFFD\uFFFD\uFFFDz\uFFFD");
    EXPECT_EQ(EscapeLabel(""), "&#160;");

    ProblemList problems;
    MaterialDocument document;
    std::string previous;
    for (const std::string& name : names) {
        DocumentNode node{name, "CoreMaths", 0, {}, 0};
        node.Properties.push_back({"Function", Materials::GuiPropertyKind::Enum, "Frac"});
        node.Properties.push_back({"Description", Materials::GuiPropertyKind::String, name});
        document.Nodes.push_back(node);
        if (!previous.empty())
            document.Edges.push_back({previous, "out_value", name, "in_value1", 0});
        previous = name;
    }
    MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
    for (const auto& node : graph.Nodes()) {
        problems.Fail("compile", {{}, 0, node.Id, {}}, "bad: " + node.Id);
        problems.Warn("compile", {{}, 0, node.Id, "out_value"}, node.Id);
    }
    EXPECT_EQ(graph.Edges().size(), std::size(names) - 1);
    problems.Fail("compile", {}, R"(whole <\N>)");
    ExpectGolden("pictures/odd_names.txt",
                 DescribeSvg(RenderPicture(DrawMaterial(graph, problems, {}), PictureFormat::Svg)));
}

TEST(Pictures, ShortenLongTextsBetweenCharacters)
{
    EXPECT_EQ(Shorten("éééé", 4), "éééé");
    EXPECT_EQ(Shorten("ééééé", 4), "ééé…");
    EXPECT_EQ(WrapLabel("one two\nthree", 7),
              "one two<BR ALIGN=\"LEFT\"/>three<BR ALIGN=\"LEFT\"/>");
    EXPECT_EQ(WrapLabel("éééééé é", 4), "éééé<BR ALIGN=\"LEFT\"/>éé é<BR ALIGN=\"LEFT\"/>");
}

/// The node "product" and one of its edges are red.
TEST(Pictures, MarkWhatIsWrong)
{
    ProblemList problems;
    ExpectGolden("pictures/wrong.dot", DrawDocument(MaterialFromText(wrong), problems).Dot);
    EXPECT_EQ(problems.Problems().size(), 1u);

    // Conflicts are shown without any report; problems without a node are listed below the graph.
    ProblemList others;
    MaterialGraph graph = LoadMaterial(MaterialFromText(wrong), TestPlugins(), others);
    ResolveGraph(graph, others);
    others.Warn("compile", {{}, 0, "uv", "read"}, "look here");
    others.Fail("compile", {{}, 0, "gone", {}}, "not in the picture");
    others.Warn("compile", {}, "nor this");
    const Drawing second = DrawMaterial(graph, others, {});
    ExpectGolden("pictures/warned.dot", second.Dot);
    EXPECT_NE(DescribeSvg(RenderPicture(second, PictureFormat::Svg)), "not well-formed");

    // The frame of "uv" is red although its warning came before its error.
    others.Fail("compile", {{}, 0, "uv", {}}, "worse");
    EXPECT_NE(DrawMaterial(graph, others, {}).Dot.find(R"(COLOR="#cc0d0d" BGCOLOR="#d1d1ff")"),
              std::string::npos);
}

/// The placeholder "wobble" has the ports of its edges, in their order.
TEST(Pictures, DrawPlaceholdersWithThePortsOfTheirEdges)
{
    ProblemList problems;
    ExpectGolden("pictures/placeholder.dot", DrawDocument(MaterialFromText(R"(
        uv CoreUv
        paint CoreTexture
        wobble StudioWobble@3
        uv.read -> wobble.in_b
        uv.read -> wobble.in_a
        wobble.out_uv -> paint.in_uv
    )"),
                                                          problems)
                                                 .Dot);
}

/// Diagrams show stages and interpolated values, including the dead code of "two_maths".
TEST(Pictures, OfShaders)
{
    for (const std::string name : {"tinted_texture", "two_maths"})
        ExpectGolden("pictures/" + name + "_shader.dot", DrawExampleShader(name).Dot);

    // A material with errors has no stages, but the nodes generated so far are shown.
    ProblemList problems;
    MaterialGraph graph = LoadMaterial(MaterialFromText(wrong), TestPlugins(), problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    GeneratedShader shader;
    GenerateShaderGraph(graph, shader, problems);
    ExpectGolden("pictures/wrong_shader.dot", DrawShader(shader, problems).Dot);
}

TEST(Pictures, KeepTextReadable)
{
    const Colour yellow{1, 1, 0.5f};
    EXPECT_EQ(ReadableOn(yellow, {0.2f, 0.2f, 0.2f}).Format(), "#333333");
    EXPECT_EQ(ReadableOn(yellow, {1, 1, 1}).Format(), "#000000");
    EXPECT_EQ(ReadableOn({0.1f, 0, 0.3f}, {0, 0, 0}).Format(), "#ffffff");
    EXPECT_EQ((Colour{7, -1, std::numeric_limits<float>::quiet_NaN()}).Format(), "#ff0000");
}

TEST(Pictures, FailureOfTheProgramIsAnError)
{
    EXPECT_THROW(RenderPicture({"digraph {", {}}, PictureFormat::Svg), HostError);
    EXPECT_THROW(RenderPicture({"digraph { n [label=<<B>>] }", {}}, PictureFormat::Svg), HostError);
}

} // namespace
