#include "mox/document/MaterialDocument.h"
#include "mox/host/HostError.h"
#include "tests/support/DocumentMaker.h"
#include "tests/support/Failure.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"
#include "tests/support/SchemaVerdict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

using namespace Mox::Host;
using Mox::Materials::GuiPropertyKind;

const std::filesystem::path folder = MOX_TEST_DATA "/document";

MaterialDocument Parse(const std::string& text)
{
    ProblemList problems;
    MaterialDocument document = ParseMaterialDocument("x.xml", text, problems);
    EXPECT_EQ(FormatProblems(problems), "") << text;
    return document;
}

std::string ProblemsOf(const std::string& text)
{
    ProblemList problems;
    ParseMaterialDocument("x.xml", text, problems);
    return FormatProblems(problems);
}

std::string Rewrite(const std::string& text)
{
    return FormatMaterialDocument(Parse(text));
}

std::string Repeat(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST(MaterialDocument, ExamplesAreInTheCanonicalForm)
{
    std::vector<std::filesystem::path> files = ExampleDocuments();
    files.push_back(folder / "everything.xml");
    for (const std::filesystem::path& file : files) {
        const std::string text = ReadText(file);
        EXPECT_EQ(Rewrite(text), text) << file;
    }
}

TEST(MaterialDocument, WritingIsAFixedPointAndLosesNothing)
{
    Random random(DrawSeed());
    DocumentMaker maker(random);
    for (int i = 0; i < 1000; ++i) {
        const MaterialDocument document = maker.Make();
        const std::string text = FormatMaterialDocument(document);
        ASSERT_TRUE(FollowsSchema(text)) << text;
        const MaterialDocument read = Parse(text);
        ASSERT_EQ(FormatMaterialDocument(read), text);
        ASSERT_EQ(FormatDocument(read), FormatDocument(document));
    }
}

/// A document states which readers understand it; older readers only know the first version.
TEST(MaterialDocument, TheVersionIsTheLowestThatHasEverything)
{
    const std::pair<const char*, const char*> documents[] = {
        {"<material version=\"2\"/>", "1"},
        {"<material version=\"2\"><annotations/></material>", "1"},
        {"<material version=\"2\"><annotations><!--why--></annotations></material>", "2"},
        {"<material version=\"2\"><annotations><annotation id=\"a\" kind=\"note\" text=\"\" "
         "x=\"-0\" "
         "y=\"007\" width=\"1\" height=\"1\"/></annotations></material>",
         "2"},
        {"<material version=\"2\"><edges><edge tail=\"\" tailPort=\"\" head=\"\" headPort=\"\" "
         "points=\"0,0\"/></edges></material>",
         "2"},
    };
    for (const auto& [text, version] : documents) {
        const std::string written = Rewrite(text);
        EXPECT_NE(written.find(std::string("<material version=\"") + version), written.npos);
        EXPECT_EQ(Rewrite(written), written);
    }
}

/// Comments in an element without children or after the root keep their position too.
TEST(MaterialDocument, CommentsStayWithWhatTheyStandBefore)
{
    const DocumentNode node = ReadMaterialDocument(folder / "everything.xml").Nodes[0];
    EXPECT_EQ(node.Comments, (DocumentComments{" node ", " second "}));
    EXPECT_EQ(node.LastComments, DocumentComments{" last property "});
    EXPECT_EQ(Rewrite("<material version=\"1\"><edges><edge tail=\"\" tailPort=\"\" head=\"\" "
                      "headPort=\"\"><!--in--></edge></edges></material><!--out-->"),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<material version="1">
  <nodes/>
  <edges>
    <!--in-->
    <edge tail="" tailPort="" head="" headPort=""/>
  </edges>
  <!--out-->
</material>
)");
}

TEST(MaterialDocument, AllProblemsOfADocumentAreFound)
{
    const std::string text = ReadText(folder / "many_problems.xml");
    ExpectGolden("document/many_problems.txt", ProblemsOf(text));
    // Whatever could be parsed is available for further checks.
    ProblemList problems;
    const MaterialDocument document = ParseMaterialDocument("x.xml", text, problems);
    EXPECT_EQ(document.Nodes.size(), 5u);
    EXPECT_EQ(document.Edges.size(), 1u);
    EXPECT_EQ(document.Bindings.size(), 5u);
    EXPECT_THROW(ReadMaterialDocument(folder / "many_problems.xml"), HostError);
}

TEST(MaterialDocument, HostileTexts)
{
    EXPECT_EQ(ProblemsOf("\xEF\xBB\xBF<material version=\"1\"/>"), "");
    EXPECT_EQ(ProblemsOf("<x:material version=\"1\" xmlns:x=\"urn:x\"/>"),
              "error schema: x.xml:1:1: unexpected element <x:material>, expected <material>\n");
    EXPECT_EQ(ProblemsOf("<material xmlns=\"urn:x\" version=\"1\"/>"),
              "error schema: x.xml:1:11: unexpected attribute \"xmlns\", expected only "
              "\"version\"\n");
    // One long line with very many problems: both the list and the parser stop.
    const std::string many = ProblemsOf("<material version=\"1\">" + Repeat("<a/><b/>", 500000));
    EXPECT_EQ(std::ranges::count(many, '\n'), 1001);
    const std::string longValue =
        ProblemsOf("<material version=\"" + Repeat("\xC3\xA9\n", 1000) + "\"/>");
    EXPECT_EQ(std::ranges::count(longValue, '\n'), 1);
    EXPECT_LT(longValue.size(), 200u);
}

/// An interrupted write may leave any prefix of a document.
TEST(MaterialDocument, TruncatedAtEveryLength)
{
    for (const std::filesystem::path& example : ExampleDocuments()) {
        const std::string text = ReadText(example);
        for (std::size_t length = text.rfind('>'); length > 0; --length) {
            ProblemList problems;
            const MaterialDocument document =
                ParseMaterialDocument("a.xml", text.substr(0, length), problems);
            ASSERT_EQ(problems.Problems().size(), 1u) << example << " " << length;
            EXPECT_TRUE(problems.HasErrors());
            EXPECT_TRUE(document.Nodes.empty());
            const std::string line = problems.Problems().front().Format();
            EXPECT_EQ(line.find('\n'), std::string::npos);
            EXPECT_TRUE(line.starts_with("a.xml:")) << line;
        }
    }
}

TEST(MaterialDocument, LinesAndColumnsAreRightBehindTheFirst65535)
{
    constexpr int count = 70000;
    std::string text = "<material version=\"1\"><nodes>";
    for (int i = 0; i < count; ++i)
        text += "\n<node id=\"" + std::to_string(i) + "\" type=\"\"\nversion=\"0\"/>";
    text += "</nodes><edges>\n\n  <edge tail=\"é\"\n   x=\"\"\n tailPort=\"\" head=\"\" "
            "headPort=\"\"/>\n</edges></material>";
    ProblemList problems;
    const MaterialDocument document = ParseMaterialDocument("x.xml", text, problems);
    for (int i = 0; i < count; i += 9999)
        EXPECT_EQ(document.Nodes[i].Line, 2 + 2 * i);
    EXPECT_EQ(document.Edges[0].Line, 2 * count + 3);
    ASSERT_EQ(problems.Problems().size(), 1u);
    EXPECT_EQ(problems.Problems()[0].Where.Line, 2 * count + 4);
    EXPECT_EQ(problems.Problems()[0].Where.Column, 4);
}

TEST(MaterialDocument, WhatNoDocumentCanHoldIsRefused)
{
    const auto failure = [](const MaterialDocument& document) {
        return HostFailureOf([&] { FormatMaterialDocument(document); });
    };
    for (const std::string& text :
         {std::string("\0", 1), std::string("\x01"), std::string("\xFF"), std::string("\xC3"),
          std::string("\xED\xA0\x80"), std::string("\xEF\xBF\xBF"), std::string("\xC0\x80")}) {
        MaterialDocument document;
        document.File = "x.xml";
        document.Nodes.push_back(
            {"a", "t", 0, {{"p", GuiPropertyKind::String, text, 0, {}}}, 0, {}, {}});
        EXPECT_EQ(failure(document), "x.xml: node \"a\": cannot be written: attribute \"value\" "
                                     "contains a character that is not allowed in XML");
        document.Nodes.clear();
        document.Comments.Document.Before = {text};
        EXPECT_EQ(
            failure(document),
            "x.xml: cannot be written: a comment contains a character that is not allowed in XML");
    }
    MaterialDocument document;
    document.RenderState = {{"gloss", "1"}};
    EXPECT_EQ(failure(document), "cannot be written: <renderState> has no attribute \"gloss\"");
}

} // namespace
