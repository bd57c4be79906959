#include "mox/document/MaterialDocument.h"
#include "mox/document/MaterialSchema.h"
#include "mox/host/HostError.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/relaxng.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>

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

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The whole schema, regular expressions and all.
xmlRelaxNGPtr WholeSchema()
{
    static const std::unique_ptr<xmlRelaxNG, decltype(&xmlRelaxNGFree)> schema = [] {
        const std::string text = MaterialSchema::Text;
        const std::unique_ptr<xmlRelaxNGParserCtxt, decltype(&xmlRelaxNGFreeParserCtxt)> parser(
            xmlRelaxNGNewMemParserCtxt(text.data(), static_cast<int>(text.size())),
            xmlRelaxNGFreeParserCtxt);
        return std::unique_ptr<xmlRelaxNG, decltype(&xmlRelaxNGFree)>(xmlRelaxNGParse(parser.get()),
                                                                      xmlRelaxNGFree);
    }();
    return schema.get();
}

/// Whether libxml2 alone, with the whole document in memory, finds that it follows the schema.
bool IsValid(const std::string& text)
{
    const auto ignore = [](void*, xmlErrorPtr) {};
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeDoc);
    const std::unique_ptr<xmlRelaxNGValidCtxt, decltype(&xmlRelaxNGFreeValidCtxt)> context(
        xmlRelaxNGNewValidCtxt(WholeSchema()), xmlRelaxNGFreeValidCtxt);
    xmlRelaxNGSetValidStructuredErrors(context.get(), ignore, nullptr);
    return document && xmlRelaxNGValidateDoc(context.get(), document.get()) == 0;
}

/// Documents that follow the schema: parts of the one with everything, with random texts.
class DocumentMaker
{
public:
    explicit DocumentMaker(unsigned seed) : _random(seed) {}

    MaterialDocument Make()
    {
        MaterialDocument document = _everything;
        MaterialComments& comments = document.Comments;
        for (auto* part :
             {&comments.Document, &comments.Nodes, &comments.Edges, &comments.Bindings})
            *part = {Comments(), Comments()};
        Thin(document.Nodes);
        Thin(document.Edges);
        Thin(document.Bindings);
        if (Below(2) == 0)
            document.Description.clear();
        comments.Description = document.Description.empty() ? DocumentComments() : Comments();
        for (DocumentValue& value : document.Description)
            value.Value = value.Name == "visibleinmayaui" ? "No" : Text();
        for (DocumentNode& node : document.Nodes) {
            Thin(node.Properties);
            node.Id += Text();
            node.Type = Text();
            node.Version = static_cast<std::int32_t>(_random());
            node.Comments = Comments();
            node.LastComments = Comments();
            for (DocumentProperty& property : node.Properties) {
                property.Name = Text();
                property.Comments = Comments();
                if (property.Kind == GuiPropertyKind::String)
                    property.Value = Text();
            }
        }
        for (DocumentEdge& edge : document.Edges)
            edge = {Text(), Text(), Text(), Text(), 0, Comments()};
        for (DocumentBinding& binding : document.Bindings) {
            binding.Comments = Comments();
            for (DocumentValue& value : binding.Values) {
                if (value.Name == "desc" || value.Value.empty())
                    value.Value = Text();
            }
        }
        return document;
    }

    std::size_t Below(std::size_t end)
    {
        return std::uniform_int_distribution(std::size_t(0), end - 1)(_random);
    }

private:
    template <class Record>
    void Thin(std::vector<Record>& records)
    {
        std::erase_if(records, [this](const Record&) { return Below(2) == 0; });
    }

    DocumentComments Comments()
    {
        DocumentComments comments;
        while (Below(4) == 0)
            comments.push_back(Text());
        return comments;
    }

    std::string Text()
    {
        static const char* const pieces[] = {
            "a",   "mix",   " ",    "\t", "\n",       "\r",           "\r\n",
            "&",   "<",     ">",    "\"", "'",        "--",           "-",
            "]]>", "&#10;", "<!--", "%",  "\xC3\xA9", "\xE2\x80\xA8", "\xF0\x9F\x98\x80",
        };
        std::string text;
        while (Below(4) != 0)
            text += pieces[Below(std::size(pieces))];
        return text;
    }

    std::mt19937 _random;
    const MaterialDocument _everything = ReadMaterialDocument(folder / "everything.xml");
};

unsigned Seed()
{
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << "\n";
    return seed;
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
    const unsigned seed = Seed();
    DocumentMaker maker(seed);
    for (int i = 0; i < 1000; ++i) {
        const MaterialDocument document = maker.Make();
        const std::string text = FormatMaterialDocument(document);
        ASSERT_TRUE(IsValid(text)) << "seed " << seed << "\n" << text;
        const MaterialDocument read = Parse(text);
        ASSERT_EQ(FormatMaterialDocument(read), text) << "seed " << seed;
        ASSERT_EQ(FormatDocument(read), FormatDocument(document)) << "seed " << seed;
    }
}

/// The rules explain what libxml2 decides, so a document with a flaw has a problem exactly if
/// libxml2 refuses it, and libxml2's own words are never needed.
TEST(MaterialDocument, RulesAndSchemaAgreeOnBrokenDocuments)
{
    const unsigned seed = Seed();
    DocumentMaker maker(seed);
    const std::vector<std::string> flaws = Lines(ReadText(folder / "flaws.txt"));
    int broken = 0;
    int valid = 0;
    for (int i = 0; i < 4000; ++i) {
        std::string text = FormatMaterialDocument(maker.Make());
        const std::string flaw = flaws[maker.Below(flaws.size())];
        // Instead of an attribute or in front of a tag.
        const std::size_t equals = flaw.find('=');
        std::size_t place = text.find(flaw.substr(0, equals + 1), maker.Below(text.size()));
        if (flaw[0] != '<' && equals != std::string::npos && place != std::string::npos) {
            const std::size_t end = text.find('"', place + equals + 2);
            text.replace(place, end + 1 - place, maker.Below(3) == 0 ? "" : flaw);
        } else {
            place = text.find(maker.Below(2) == 0 ? "<" : "/>", maker.Below(text.size()));
            if (place == std::string::npos)
                continue;
            text.insert(place, flaw);
        }
        const std::string problems = ProblemsOf(text);
        if (problems.starts_with("error not-well-formed: ") ||
            problems.find("doubled-") != std::string::npos)
            continue;
        ASSERT_EQ(problems.empty(), IsValid(text)) << "seed " << seed << "\n" << problems << text;
        ASSERT_EQ(problems.find("does not follow"), std::string::npos) << problems;
        ++(problems.empty() ? valid : broken);
    }
    EXPECT_GT(broken, 1000);
    EXPECT_GT(valid, 50);
}

TEST(MaterialDocument, AChangedValueChangesOneLine)
{
    const MaterialDocument everything = ReadMaterialDocument(folder / "everything.xml");
    const std::vector<std::string> before = Lines(FormatMaterialDocument(everything));
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
        MaterialDocument document = everything;
        change(document);
        const std::vector<std::string> after = Lines(FormatMaterialDocument(document));
        ASSERT_EQ(before.size(), after.size());
        int count = 0;
        for (std::size_t i = 0; i < before.size(); ++i)
            count += before[i] != after[i];
        EXPECT_EQ(count, 1);
    }
}

/// What stands in an element without children or behind the root has a place too.
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
    // What could be understood is there for further checks.
    ProblemList problems;
    const MaterialDocument document = ParseMaterialDocument("x.xml", text, problems);
    EXPECT_EQ(document.Nodes.size(), 4u);
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
    EXPECT_EQ(
        ProblemsOf("<!--<a b='c'-->\n<material version=\"1\"" + Repeat(" a=\"\"", 100000) + "/>"),
        "error too-many-attributes: x.xml:2: an element has more than 256 attributes\n");
    // One long line with very many problems: the list ends, and so does the reading.
    const std::string many = ProblemsOf("<material version=\"1\">" + Repeat("<a/>", 1000000));
    EXPECT_EQ(Lines(many).size(), 1001u);
    const std::string longValue =
        ProblemsOf("<material version=\"" + Repeat("\xC3\xA9\n", 1000) + "\"/>");
    EXPECT_EQ(Lines(longValue).size(), 1u);
    EXPECT_LT(longValue.size(), 200u);
}

/// A write that was interrupted leaves any beginning of a document.
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
