#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/pictures/Colour.h"
#include "mox/pictures/DotText.h"
#include "mox/pictures/Graphviz.h"
#include "mox/pictures/MaterialPicture.h"
#include "mox/pictures/ShaderPicture.h"
#include "mox/program/MaterialProgram.h"
#include "tests/support/Golden.h"
#include "tests/support/MaterialText.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
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
    return DrawMaterial(graph, problems, IconsOfNodes(graph, TestPlugins()));
}

Drawing DrawExampleShader(const std::string& name)
{
    static const Environment environment = ReadEnvironment(MOX_ENVIRONMENT_FOLDER);
    ProblemList problems;
    const MaterialGraph graph =
        OpenMaterial(Compose(MOX_EXAMPLES "/", name, ".xml"), TestPlugins(), problems);
    GeneratedShader shader;
    CompleteShader(graph, environment, shader, problems);
    return DrawShader(shader, problems);
}

/// The line of the text that declares a node.
std::string LineOf(const Drawing& drawing, const std::string& node)
{
    const std::size_t start = drawing.Dot.find("\n  " + node + " [");
    EXPECT_NE(start, std::string::npos) << node;
    return drawing.Dot.substr(start + 1, drawing.Dot.find('\n', start + 1) - start - 1);
}

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// What people see of an SVG: the tooltips, and the texts of each node's lines joined by "|".
struct SvgTexts
{
    std::vector<std::string> Tooltips;
    std::vector<std::string> Nodes;
    std::size_t Edges = 0;
};

std::string Take(xmlChar* text)
{
    const std::unique_ptr<xmlChar, decltype(xmlFree)> owner(text, xmlFree);
    return text ? reinterpret_cast<const char*>(text) : "";
}

SvgTexts ReadSvg(const std::string& svg)
{
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(svg.data(), static_cast<int>(svg.size()), nullptr, nullptr, XML_PARSE_NONET),
        xmlFreeDoc);
    SvgTexts texts;
    if (!document) {
        ADD_FAILURE() << "not well-formed: " << svg;
        return texts;
    }
    const std::function<void(xmlNode*)> visit = [&](xmlNode* element) {
        const std::string name = reinterpret_cast<const char*>(element->name);
        const std::string kind = Take(xmlGetProp(element, BAD_CAST "class"));
        if (kind == "node")
            texts.Nodes.emplace_back();
        texts.Edges += kind == "edge" ? 1 : 0;
        if (name == "a")
            texts.Tooltips.push_back(Take(xmlGetProp(element, BAD_CAST "title")));
        if (name == "text" && !texts.Nodes.empty())
            texts.Nodes.back() += Take(xmlNodeGetContent(element)) + "|";
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
    ExpectGolden("pictures/tinted_texture_shader.dot", DrawExampleShader("tinted_texture").Dot);
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
    EXPECT_FALSE(Contains(svg, ".png\""));
    std::size_t images = 0;
    for (std::size_t i = 0;
         (i = svg.find("href=\"data:image/png;base64,iVBORw0KGgo", i)) != std::string::npos; ++i)
        ++images;
    EXPECT_EQ(images, picture.Images.size());
    EXPECT_EQ(RenderPicture(picture, PictureFormat::Png).substr(0, 8), "\x89PNG\r\n\x1a\n");

    // An image of another size under the same name is another picture.
    Drawing larger = picture;
    larger.Images.begin()->second = {2, 1, std::vector<std::uint8_t>(8, 0xff)};
    EXPECT_NE(RenderPicture(larger, PictureFormat::Svg), svg);
}

TEST(Pictures, ShowEveryNameAsItStands)
{
    const std::string names[] = {
        "\"quoted\" 'too'",
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
        " ",
    };
    // What is no text at all is seen as that.
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
        problems.Fail("test", {{}, 0, node.Id, {}}, "bad: " + node.Id);
        problems.Warn("test", {{}, 0, node.Id, "out_value"}, node.Id);
    }
    EXPECT_EQ(graph.Edges().size(), std::size(names) - 1);
    problems.Fail("test", {}, R"(whole <\N>)");
    const SvgTexts texts =
        ReadSvg(RenderPicture(DrawMaterial(graph, problems, {}), PictureFormat::Svg));
    EXPECT_EQ(texts.Nodes.size(), std::size(names));
    EXPECT_EQ(texts.Edges, std::size(names) - 1);

    const auto clean = [](std::string text, const std::string& lineEnd) {
        for (const auto& [from, to] : {std::pair<std::string, std::string>("\r\n", "\n"),
                                       {"\r", "\n"},
                                       {"\t", " "},
                                       {"\n", lineEnd},
                                       {"\u00a0", " "}}) {
            for (std::size_t i = 0; (i = text.find(from, i)) != std::string::npos; i += to.size())
                text.replace(i, from.size(), to);
        }
        return text;
    };
    for (std::size_t i = 0; i < std::size(names) && i < texts.Nodes.size(); ++i) {
        const std::string name = clean(names[i], " ");
        EXPECT_TRUE(clean(texts.Nodes[i], " ").starts_with("Frac|" + name + "|"))
            << texts.Nodes[i] << "\nfor " << name;
        const std::string lines = clean(names[i], "\n");
        const auto hasTooltip = [&](const std::string& tooltip) {
            return std::any_of(texts.Tooltips.begin(), texts.Tooltips.end(),
                               [&](const std::string& t) { return clean(t, "\n") == tooltip; });
        };
        EXPECT_TRUE(hasTooltip(Compose("node \"Maths\" (CoreMaths)\n", lines, "\nbad: ", lines,
                                       "\nport \"out_value\": ", lines)))
            << name;
        EXPECT_TRUE(hasTooltip("out_value\n" + lines)) << name;
        if (i > 0) {
            EXPECT_TRUE(hasTooltip(
                Compose(clean(names[i - 1], "\n"), ".out_value -> ", lines, ".in_value1")))
                << name;
        }
    }
}

TEST(Pictures, ShortenLongTextsBetweenCharacters)
{
    EXPECT_EQ(Shorten("éééé", 4), "éééé");
    EXPECT_EQ(Shorten("ééééé", 4), "ééé…");
    EXPECT_EQ(WrapLabel("one two\nthree", 7),
              "one two<BR ALIGN=\"LEFT\"/>three<BR ALIGN=\"LEFT\"/>");
    EXPECT_EQ(WrapLabel("éééééé é", 4), "éééé<BR ALIGN=\"LEFT\"/>éé é<BR ALIGN=\"LEFT\"/>");
}

TEST(Pictures, MarkWhatIsWrong)
{
    const std::string red = "#cc0d0d";
    const std::string amber = "#b36b00";
    ProblemList problems;
    const Drawing picture = DrawDocument(MaterialFromText(wrong), problems);
    ASSERT_EQ(problems.Problems().size(), 1u);
    const std::string product = LineOf(picture, "n3");
    EXPECT_TRUE(Contains(product, "COLOR=\"" + red + "\""));
    EXPECT_TRUE(Contains(product, "component counts do not agree"));
    EXPECT_FALSE(Contains(LineOf(picture, "n2"), red));
    EXPECT_TRUE(Contains(picture.Dot, "n1:o0:e -> n3:i1:w [tooltip=\"uv.read -&gt; "
                                      "product.in_value2\", color=\"" +
                                          red + "\"]"));
    EXPECT_TRUE(Contains(picture.Dot, "n3:o0:e -> n4:i0:w [tooltip=\"product.out_value -&gt; "
                                      "surface.in_colour\"]"));

    // Conflicts show without any report; problems of no node stand below the graph.
    ProblemList others;
    MaterialGraph graph = LoadMaterial(MaterialFromText(wrong), TestPlugins(), others);
    ResolveGraph(graph, others);
    others.Warn("test", {{}, 0, "uv", "read"}, "look here");
    others.Fail("test", {{}, 0, "gone", {}}, "not in the picture");
    others.Warn("test", {}, "nor this");
    const Drawing second = DrawMaterial(graph, others, {});
    EXPECT_TRUE(Contains(LineOf(second, "n3"), red));
    EXPECT_TRUE(Contains(LineOf(second, "n1"), amber));
    EXPECT_TRUE(Contains(LineOf(second, "n1"), "TITLE=\"read&#10;look here\""));
    EXPECT_TRUE(Contains(second.Dot, red + "\">node &quot;gone&quot;: not in the picture"));
    EXPECT_TRUE(Contains(second.Dot, amber + "\">nor this"));
    ReadSvg(RenderPicture(second, PictureFormat::Svg));
}

TEST(Pictures, DrawPlaceholdersWithThePortsOfTheirEdges)
{
    MaterialDocument document = MaterialFromText(R"(
        uv CoreUv
        paint CoreTexture
    )");
    document.Nodes.push_back({"wobble", "StudioWobble", 3, {}, 0});
    document.Edges = {{"uv", "read", "wobble", "in_b", 0},
                      {"uv", "read", "wobble", "in_a", 0},
                      {"wobble", "out_uv", "paint", "in_uv", 0}};
    ProblemList problems;
    const Drawing picture = DrawDocument(document, problems);
    const std::string line = LineOf(picture, "n3");
    EXPECT_TRUE(Contains(line, "STYLE=\"ROUNDED,DASHED\""));
    EXPECT_TRUE(Contains(line, "wobble (StudioWobble)"));
    EXPECT_LT(line.find("● in_b"), line.find("● in_a"));
    EXPECT_TRUE(Contains(picture.Dot, "n1:o0:e -> n3:i1:w ["));
    EXPECT_TRUE(Contains(picture.Dot, "n3:o0:e -> n2:i0:w ["));
    EXPECT_FALSE(Contains(LineOf(picture, "n1"), "DASHED"));
}

TEST(Pictures, OfShadersShowStagesAndWhatCrosses)
{
    const std::string dead = DrawExampleShader("two_maths").Dot;
    EXPECT_TRUE(Contains(dead, "float → half"));
    EXPECT_TRUE(Contains(dead, "TEXCOORD0.xyz"));
    const std::string deadArea = "fillcolor=\"#ededed\"";
    EXPECT_TRUE(Contains(dead, deadArea));
    EXPECT_FALSE(Contains(DrawExampleShader("rim_light").Dot, deadArea));

    // A material with errors has no stages, but what became of it is there.
    ProblemList problems;
    MaterialGraph graph = LoadMaterial(MaterialFromText(wrong), TestPlugins(), problems);
    ResolveGraph(graph, problems);
    ReportCountConflicts(graph, problems);
    GeneratedShader shader;
    GenerateShaderGraph(graph, shader, problems);
    const std::string broken = DrawShader(shader, problems).Dot;
    EXPECT_TRUE(Contains(broken, "textureCode"));
    EXPECT_TRUE(Contains(broken, "component counts do not agree"));
    EXPECT_FALSE(Contains(broken, "vertex program"));
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
