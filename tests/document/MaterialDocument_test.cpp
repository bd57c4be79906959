#include "mox/document/MaterialDocument.h"
#include "mox/document/XmlWriter.h"
#include "mox/host/HostError.h"
#include "tests/support/DocumentMaker.h"
#include "tests/support/Golden.h"
#include "tests/support/SchemaVerdict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using namespace Mox::Host;
using Mox::Materials::GuiPropertyKind;

const std::filesystem::path examples =
    std::filesystem::path(MOX_TEST_DATA).parent_path() / "examples";

MaterialDocument Parse(const std::string& text)
{
    ProblemList problems;
    MaterialDocument document = ParseMaterialDocument("x.xml", text, problems);
    for (const Problem& problem : problems.Problems())
        ADD_FAILURE() << problem.Format() << "\n" << text;
    return document;
}

std::string ProblemsOf(const std::string& text)
{
    ProblemList problems;
    ParseMaterialDocument("x.xml", text, problems);
    std::string lines;
    for (const Problem& problem : problems.Problems())
        lines += problem.Rule + ": " + problem.Format() + "\n";
    return lines;
}

std::string Rewrite(const std::string& text)
{
    return FormatMaterialDocument(Parse(text));
}

TEST(MaterialDocument, ExamplesAreInTheCanonicalForm)
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(examples)) {
        if (entry.path().extension() != ".xml")
            continue;
        ++count;
        SCOPED_TRACE(entry.path());
        std::ifstream stream(entry.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_EQ(Rewrite(text), text);
    }
    EXPECT_GE(count, 5);
}

TEST(MaterialDocument, WritingIsAFixedPointAndLosesNothing)
{
    const std::uint32_t seed = DrawSeed();
    DocumentMaker maker(seed);
    for (int i = 0; i < 1000; ++i) {
        const MaterialDocument document = maker.Make();
        const std::string text = FormatMaterialDocument(document);
        ASSERT_TRUE(FollowsSchema(text)) << "seed " << seed << "\n" << text;
        const MaterialDocument read = Parse(text);
        ASSERT_EQ(FormatMaterialDocument(read), text) << "seed " << seed;
        ASSERT_EQ(read.Nodes.size(), document.Nodes.size());
        for (std::size_t n = 0; n < read.Nodes.size(); ++n) {
            const DocumentNode& left = read.Nodes[n];
            const DocumentNode& right = document.Nodes[n];
            ASSERT_EQ(left.Id, right.Id);
            ASSERT_EQ(left.Type, right.Type);
            ASSERT_EQ(left.Version, right.Version);
            ASSERT_EQ(left.Properties.size(), right.Properties.size());
            for (std::size_t p = 0; p < left.Properties.size(); ++p) {
                ASSERT_EQ(left.Properties[p].Name, right.Properties[p].Name);
                ASSERT_EQ(left.Properties[p].Kind, right.Properties[p].Kind);
                ASSERT_EQ(left.Properties[p].Value, right.Properties[p].Value);
                ASSERT_EQ(left.Properties[p].Comments.size(), right.Properties[p].Comments.size());
            }
            ASSERT_EQ(left.LastComments.size(), right.LastComments.size());
        }
        ASSERT_EQ(read.Edges.size(), document.Edges.size());
        for (std::size_t e = 0; e < read.Edges.size(); ++e) {
            ASSERT_EQ(read.Edges[e].Tail, document.Edges[e].Tail);
            ASSERT_EQ(read.Edges[e].HeadPort, document.Edges[e].HeadPort);
        }
        ASSERT_EQ(read.Bindings.size(), document.Bindings.size());
        for (std::size_t b = 0; b < read.Bindings.size(); ++b)
            ASSERT_EQ(read.Bindings[b].Values.size(), document.Bindings[b].Values.size());
    }
}

TEST(MaterialDocument, AChangedValueChangesOneLine)
{
    const std::string text = Rewrite(R"(<material version="1">
        <description name="Rock"/><renderState zTest="Yes" alphaRef="0.5"/>
        <nodes><node id="a" type="t" version="0"><property name="p" kind="string" value="v"/></node></nodes>
        <edges><edge tail="a" tailPort="b" head="c" headPort="d"/></edges>
        <bindings><binding tag="t" stream="float" min="0" default="1"/></bindings></material>)");
    const auto lines = [](const std::string& all) {
        std::vector<std::string> result(1);
        for (const char c : all) {
            if (c == '\n')
                result.emplace_back();
            else
                result.back() += c;
        }
        return result;
    };
    using Change = void (*)(MaterialDocument&);
    const Change changes[] = {
        [](MaterialDocument& d) { d.Description[0].Value = "two\nlines"; },
        [](MaterialDocument& d) { d.RenderState[1].Value = "0.75"; },
        [](MaterialDocument& d) { d.Nodes[0].Type = "u"; },
        [](MaterialDocument& d) { d.Nodes[0].Properties[0].Value = "\r\n"; },
        [](MaterialDocument& d) { d.Edges[0].Head = ""; },
        [](MaterialDocument& d) { d.Bindings[0].Values[0].Value = "0, 1"; },
        [](MaterialDocument& d) {
            d.Bindings[0].Values.push_back({"gui", "slider"});
        },
    };
    for (const Change change : changes) {
        MaterialDocument document = Parse(text);
        change(document);
        const auto before = lines(text);
        const auto after = lines(FormatMaterialDocument(document));
        ASSERT_EQ(before.size(), after.size());
        int count = 0;
        for (std::size_t i = 0; i < before.size(); ++i)
            count += before[i] != after[i];
        EXPECT_EQ(count, 1);
    }
}

TEST(MaterialDocument, CommentsStayWithWhatTheyStandBefore)
{
    const std::string text = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- before the
     root é -->
<material version="1">
  <!-- description -->
  <description name="Rock"/>
  <!-- renderState -->
  <renderState zTest="Yes"/>
  <!-- nodes -->
  <nodes>
    <!-- node -->
    <!-- second -->
    <node id="a" type="t" version="0">
      <!-- property -->
      <property name="p" kind="string" value="v"/>
      <!-- last property -->
    </node>
    <!-- last node -->
  </nodes>
  <edges>
    <!-- no edges -->
  </edges>
  <!-- bindings -->
  <bindings>
    <!-- no bindings -->
  </bindings>
  <!-- end -->
</material>
)";
    EXPECT_EQ(Rewrite(text), text);
    const MaterialDocument document = Parse(text);
    EXPECT_EQ(document.Nodes[0].Comments, (DocumentComments{" node ", " second "}));
    EXPECT_EQ(document.Comments.Edges.Last, DocumentComments{" no edges "});

    // What stands in an element without children or behind the root has a place too.
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
    const std::filesystem::path file =
        std::filesystem::path(MOX_TEST_DATA) / "document/many_problems.xml";
    ProblemList problems;
    const MaterialDocument document = ReadMaterialDocument(file, problems);
    std::string lines;
    for (Problem problem : problems.Problems()) {
        problem.Where.File = "many_problems.xml";
        lines += problem.Rule + ": " + problem.Format() + "\n";
    }
    ExpectGolden("document/many_problems.txt", lines);
    // What could be understood is there for further checks.
    EXPECT_EQ(document.Nodes.size(), 4u);
    EXPECT_EQ(document.Edges.size(), 1u);
    EXPECT_EQ(document.Bindings.size(), 5u);
    EXPECT_THROW(ReadMaterialDocument(file), HostError);
}

TEST(MaterialDocument, HostileTexts)
{
    const struct
    {
        std::string Text;
        std::string Problems;
    } rows[] = {
        {"", "not-well-formed: x.xml: the document is empty\n"},
        {"\xEF\xBB\xBF<material version=\"1\"/>", ""},
        {std::string("<\0m\0", 4),
         "encoding: x.xml: the text is no UTF-8, the one encoding that is read\n"},
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><material version=\"1\"/>",
         "encoding: x.xml:1: the encoding is \"ISO-8859-1\", expected \"UTF-8\"\n"},
        {"<?xml version=\"1.0\" encoding=\"none\"?><material version=\"1\"/>",
         "encoding: x.xml:1: the encoding is \"none\", expected \"UTF-8\"\n"},
        {"<material version=\"1\">\n<!-- \xE9 --></material>",
         "encoding: x.xml:2:6: the text is no UTF-8, the one encoding that is read\n"},
        {"<!DOCTYPE material SYSTEM \"file:///etc/passwd\"><material version=\"1\"/>",
         "document-type: x.xml:1: document type declarations are not allowed\n"},
        {"<!DOCTYPE m [<!ENTITY a \"b\"><!ENTITY c \"&a;&a;\">]>\n<material version=\"&c;\"/>",
         "document-type: x.xml:1: document type declarations are not allowed\n"},
        {"<material version=\"1\"><?php?></material>",
         "processing-instruction: x.xml:1: processing instructions are not allowed\n"},
        {"<x:material version=\"1\" xmlns:x=\"urn:x\"/>",
         "schema: x.xml:1:1: unexpected element <x:material>, expected <material>\n"},
        {"<material xmlns=\"urn:x\" version=\"1\"/>",
         "schema: x.xml:1:11: unexpected attribute \"xmlns\", expected only \"version\"\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ProblemsOf(row.Text), row.Problems) << row.Text;

    const auto repeat = [](const std::string& text, int count) {
        std::string all;
        for (int i = 0; i < count; ++i)
            all += text;
        return all;
    };
    const std::string deep = ProblemsOf("<material version=\"1\">" + repeat("<a>", 100000));
    EXPECT_EQ(deep.substr(deep.find('\n') + 1),
              "too-deep: x.xml:1: elements are nested more than 32 deep\n");
    EXPECT_EQ(
        ProblemsOf("<!--<a b='c'-->\n<material version=\"1\"" + repeat(" a=\"\"", 100000) + "/>"),
        "too-many-attributes: x.xml:2: an element has more than 256 attributes\n");
    EXPECT_EQ(
        ProblemsOf("<material version=\"1\" a=\"" + repeat("a", 11000000) + "\"/>").substr(0, 16),
        "not-well-formed:");
    // One long line with very many problems: the list ends, and so does the reading.
    const std::string many = ProblemsOf("<material version=\"1\">" + repeat("<a/>", 1000000));
    EXPECT_EQ(std::count(many.begin(), many.end(), '\n'), 1001);
    const std::string longValue =
        ProblemsOf("<material version=\"" + repeat("\xC3\xA9\n", 1000) + "\"/>");
    EXPECT_EQ(std::count(longValue.begin(), longValue.end(), '\n'), 1);
    EXPECT_LT(longValue.size(), 200u);
}

TEST(MaterialDocument, LinesAndColumnsAreRightBehindTheFirst65535)
{
    std::string text = "<material version=\"1\"><nodes>";
    constexpr int count = 70000;
    for (int i = 0; i < count; ++i)
        text += "\n<node id=\"" + std::to_string(i) + "\" type=\"\"\nversion=\"0\"/>";
    text += "</nodes><edges>\n\n  <edge tail=\"é\"\n   x=\"\"\n tailPort=\"\" head=\"\" "
            "headPort=\"\"/>";
    text += "\n</edges></material>";
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
    const auto failure = [](const MaterialDocument& document) -> std::string {
        try {
            FormatMaterialDocument(document);
        } catch (const HostError& error) {
            return error.what();
        }
        return "no failure";
    };
    for (const std::string& text :
         {std::string("\0", 1), std::string("\x01"), std::string("\xFF"), std::string("\xC3"),
          std::string("\xED\xA0\x80"), std::string("\xEF\xBF\xBF"), std::string("\xC0\x80")}) {
        MaterialDocument document;
        document.File = "x.xml";
        document.Nodes.push_back(
            {"a", "t", 0, {{"p", GuiPropertyKind::String, text, 0, {}}}, 0, {}, {}});
        EXPECT_EQ(failure(document),
                  "x.xml: node \"a\": cannot be written: attribute \"value\" has "
                  "a character that XML cannot hold");
        document.Nodes.clear();
        document.Comments.Document.Before = {text};
        EXPECT_EQ(failure(document),
                  "x.xml: cannot be written: a comment has a character that XML cannot hold");
    }
    MaterialDocument document;
    document.RenderState = {{"gloss", "1"}};
    EXPECT_EQ(failure(document), "cannot be written: <renderState> has no attribute \"gloss\"");
}

} // namespace
