#include "mox/document/MaterialDocument.h"
#include "mox/document/MaterialSchema.h"
#include "tests/support/DocumentMaker.h"
#include "tests/support/SchemaVerdict.h"

#include <gtest/gtest.h>

#include <iterator>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Mox::Host;

/// What the reader says of a text, but for what is no matter of the schema.
struct Verdict
{
    std::string Problems; ///< one line each
    bool IsBeyondSchema = false;
};

Verdict Judge(const std::string& text)
{
    ProblemList problems;
    ParseMaterialDocument("x.xml", text, problems);
    Verdict verdict;
    for (const Problem& problem : problems.Problems()) {
        if (problem.Rule == "doubled-id" || problem.Rule == "doubled-binding")
            continue;
        verdict.Problems += problem.Rule + ": " + problem.Format() + "\n";
        // Neither says anything to a schema.
        verdict.IsBeyondSchema |= problem.Rule == "processing-instruction" ||
                                  problem.Message.find("xmlns") != std::string::npos;
    }
    return verdict;
}

/// Changes the text of a document at random.
class Breaker
{
public:
    explicit Breaker(DocumentMaker& random) : _random(random) {}

    std::string Break(std::string text)
    {
        using Change = void (Breaker::*)(std::string&);
        static constexpr Change changes[] = {
            &Breaker::AddMarkup,     &Breaker::MoveTag,         &Breaker::DoubleTag,
            &Breaker::RemoveTag,     &Breaker::ChangeValue,     &Breaker::ChangeValue,
            &Breaker::ChangeValue,   &Breaker::RenameAttribute, &Breaker::RemoveAttribute,
            &Breaker::MoveAttribute, &Breaker::AddAttribute,    &Breaker::AddAttribute,
        };
        for (std::size_t count = 1 + _random.Below(3); count > 0; --count)
            (this->*changes[_random.Below(std::size(changes))])(text);
        return text;
    }

private:
    struct Range
    {
        std::size_t Begin = 0;
        std::size_t End = 0;
    };

    static std::vector<std::string> Split(const std::string& text)
    {
        std::vector<std::string> parts;
        std::istringstream stream(text);
        for (std::string part; std::getline(stream, part, '|');)
            parts.push_back(part);
        return parts;
    }

    const char* Pick(std::span<const char* const> texts)
    {
        return texts[_random.Below(texts.size())];
    }

    /// A tag or comment at random, with what stands before the next one.
    Range FindTag(const std::string& text)
    {
        const std::size_t begin = text.rfind('<', _random.Below(text.size()));
        return {begin == std::string::npos ? 0 : begin,
                std::min(text.find('<', begin + 1), text.size())};
    }

    /// An attribute at random, with the blank before it.
    Range FindAttribute(const std::string& text)
    {
        const std::size_t equals = text.find("=\"", _random.Below(text.size()));
        if (equals == std::string::npos)
            return {};
        const std::size_t begin = text.rfind(' ', equals);
        const std::size_t end = text.find('"', equals + 2);
        if (begin == std::string::npos || end == std::string::npos)
            return {};
        return {begin, end + 1};
    }

    std::string Take(std::string& text, Range range)
    {
        std::string taken = text.substr(range.Begin, range.End - range.Begin);
        text.erase(range.Begin, range.End - range.Begin);
        return taken;
    }

    void AddAttributeText(std::string& text, const std::string& attribute)
    {
        const std::size_t end = text.find_first_of(" />", FindTag(text).Begin + 1);
        if (end != std::string::npos)
            text.insert(end, attribute);
    }

    void AddMarkup(std::string& text)
    {
        // \xC2\xA0 is a blank, but not one of XML.
        static const std::vector<std::string> pieces =
            Split("<node/>|<property/>|<nodes/>|<edges/>|<bindings/>|<renderState/>|"
                  "<description/>|<material version=\"1\"/>|<a/>|"
                  "<edge tail=\"\" tailPort=\"\" head=\"\" headPort=\"\"/>|"
                  "<nodes><node id=\"z\" type=\"\" version=\"0\"/></nodes>|"
                  "<property name=\"\" kind=\"bool\" value=\"true\"/>|"
                  "<binding stream=\"float\" tag=\"q\" min=\"0,  1\"/>|"
                  "<binding stream=\"uv\" tag=\"q\"></binding>|<q:edges xmlns:q=\"urn:q\"/>|"
                  "<edges xmlns=\"urn:q\"/>|<edges xmlns=\"\"/>|<!-- -->|<![CDATA[ ]]>|"
                  "<![CDATA[a]]>|<![CDATA[]]>|<?a b?>|a|&#32;|&#65;|&amp;|\xC2\xA0| \t\r\n");
        text.insert(FindTag(text).Begin, pieces[_random.Below(pieces.size())]);
    }

    void MoveTag(std::string& text)
    {
        const std::string tag = Take(text, FindTag(text));
        if (!text.empty())
            text.insert(FindTag(text).Begin, tag);
    }

    void DoubleTag(std::string& text)
    {
        const Range range = FindTag(text);
        text.insert(FindTag(text).Begin, text.substr(range.Begin, range.End - range.Begin));
    }

    void RemoveTag(std::string& text) { Take(text, FindTag(text)); }

    void ChangeValue(std::string& text)
    {
        // With a bar between them.
        static const std::vector<std::string> values =
            Split("|0|1|2|-1|+1|-0|007| 1|1 |2147483647|2147483648|1.5|1.|.5|.|-2147483648|"
                  "-2147483649|1e5|1e|1E+5|1e-5|e5|--1|inf|-inf|nan|INF|1,2|1, 2|1 ,2|1,|,1|"
                  "1,  2|1 2 3|1  2 3|1 2|1 2 3 |1 2 3 4|inf 1 nan|0.5|0.|1.0|1.01|1.00|01|"
                  "true|True|false|Yes|yes|No|string|enum|float|bool|colour|integer|node|"
                  "texture|uv|normal|slider|linear|zero|always|less| |&#10;|&#9;1|1&#10;|"
                  "\xC3\xA9|0000000000000000000000000000000000000000000000001");
        const Range range = FindAttribute(text);
        const std::size_t value = text.find("=\"", range.Begin);
        if (range.End > 0)
            text.replace(value + 2, range.End - value - 3, values[_random.Below(values.size())]);
    }

    const char* PickName()
    {
        static constexpr const char* names[] = {
            "id",       "type",     "version",  "name",     "kind",   "value",    "tail",
            "tailPort", "head",     "tag",      "stream",   "min",    "default",  "srgb",
            "gui",      "alphaRef", "zTest",    "xml:lang", "desc",   "Name",     "x",
            "q:name",   "xml:base", "headPort", "helpUrl",  "cgname", "zTestFunc"};
        return Pick(names);
    }

    void RenameAttribute(std::string& text)
    {
        const Range range = FindAttribute(text);
        const std::size_t equals = text.find("=\"", range.Begin);
        if (range.End > 0)
            text.replace(range.Begin + 1, equals - range.Begin - 1, PickName());
    }

    void RemoveAttribute(std::string& text) { Take(text, FindAttribute(text)); }

    void MoveAttribute(std::string& text)
    {
        const std::string attribute = Take(text, FindAttribute(text));
        AddAttributeText(text, attribute);
    }

    void AddAttribute(std::string& text)
    {
        static constexpr const char* values[] = {"=\"\"", "=\"1\"", "=\"Yes\"", "=\"a b\""};
        static constexpr const char* declarations[] = {" xmlns=\"urn:q\"", " xmlns=\"\"",
                                                       " xmlns:q=\"urn:q\""};
        AddAttributeText(text, _random.Below(8) == 0
                                   ? std::string(Pick(declarations))
                                   : " " + std::string(PickName()) + Pick(values));
    }

    DocumentMaker& _random;
};

/// The rules are made of the schema; libxml2 knows all of RELAX NG and says of every document what
/// the schema means.
TEST(MaterialSchema, RulesAndLibxml2JudgeAlike)
{
    const std::uint32_t seed = DrawSeed();
    DocumentMaker maker(seed);
    Breaker breaker(maker);
    int broken = 0;
    int valid = 0;
    for (int i = 0; i < 8000; ++i) {
        const std::string whole = FormatMaterialDocument(maker.Make());
        const std::string text = breaker.Break(whole.substr(whole.find('\n') + 1));
        const Verdict verdict = Judge(text);
        const bool isRight = verdict.Problems.empty();
        if (isRight || !verdict.IsBeyondSchema) {
            ASSERT_EQ(isRight, FollowsSchema(text)) << "seed " << seed << "\n"
                                                    << verdict.Problems << text;
        }
        broken += verdict.Problems.starts_with("schema");
        valid += isRight;
    }
    EXPECT_GT(broken, 2000);
    EXPECT_GT(valid, 200);
}

/// The same for the values of every attribute that has a data type of its own.
TEST(MaterialSchema, RulesAndLibxml2JudgeValuesAlike)
{
    static constexpr const char* frames[][2] = {
        {"<nodes><node type=\"\" version=\"0\" id=\"", "\"/></nodes>"},
        {"<nodes><node type=\"\" id=\"a\" version=\"", "\"/></nodes>"},
        {"<nodes><node type=\"\" id=\"a\" version=\"0\"><property name=\"\" kind=\"float\" "
         "value=\"",
         "\"/></node></nodes>"},
        {"<nodes><node type=\"\" id=\"a\" version=\"0\"><property name=\"\" kind=\"colour\" "
         "value=\"",
         "\"/></node></nodes>"},
        {"<bindings><binding tag=\"a\" stream=\"float\" min=\"", "\"/></bindings>"},
        {"<renderState alphaRef=\"", "\"/>"},
    };
    static constexpr const char* pieces[] = {"0",   "1",    "12",   ".",    "-",       "+",
                                             "e",   "E",    "inf",  "nan",  ",",       " ",
                                             "1.5", "0.25", "1e-3", "&#9;", "\xC3\xA9"};
    const std::uint32_t seed = DrawSeed();
    DocumentMaker maker(seed);
    int valid = 0;
    for (int i = 0; i < 20000; ++i) {
        const auto& frame = frames[maker.Below(std::size(frames))];
        std::string text = std::string("<material version=\"1\">") + frame[0];
        for (std::size_t count = maker.Below(7); count > 0; --count)
            text += pieces[maker.Below(std::size(pieces))];
        text += std::string(frame[1]) + "</material>";
        const std::string problems = Judge(text).Problems;
        ASSERT_EQ(problems.empty(), FollowsSchema(text)) << "seed " << seed << "\n"
                                                         << problems << text;
        valid += problems.empty();
    }
    EXPECT_GT(valid, 2000);
}

/// What the rules could not follow would be allowed by them and forbidden by the schema, or the
/// other way round.
TEST(MaterialSchema, FormsWithoutARuleAreRefused)
{
    const std::string text = MaterialSchema::Text;
    EXPECT_NO_THROW(MaterialSchema{text});
    const struct
    {
        const char* Old;
        const char* New;
    } rows[] = {
        {"<grammar ", "<grammar ns=\"urn:x\" "},
        {"<element name=\"edge\">", "<element name=\"edge\" ns=\"urn:x\">"},
        {"<element name=\"edge\">", "<element name=\"x:edge\">"},
        {"<element name=\"edge\">", "<element name=\"edge\"><text/>"},
        {"<element name=\"edge\">", "<element><anyName/>"},
        {"<element name=\"edge\">", "<element name=\"node\">"},
        {"<element name=\"edge\">", "<element name=\"edge\"><ref name=\"node\"/>"},
        {"<element name=\"edge\">",
         "<element name=\"edge\"><oneOrMore><ref name=\"node\"/></oneOrMore>"},
        {"<define name=\"edge\">", "<define name=\"edge\" combine=\"choice\">"},
        {"<define name=\"edge\">", "<define name=\"edge\"><empty/>"},
        {"<define name=\"edge\">", "<define name=\"node\">"},
        {"<ref name=\"edges\"/>", "<ref name=\"nothing\"/>"},
        {"<ref name=\"edges\"/>", "<ref name=\"nodes\"/>"},
        {"<ref name=\"edges\"/>", "<ref name=\"nodeId\"/>"},
        {"<ref name=\"edges\"/>", "<ref name=\"edges\"/><ref name=\"node\"/>"},
        {"<attribute name=\"uv\"/>", "<attribute name=\"uv\" ns=\"urn:x\"/>"},
        {"<attribute name=\"uv\"/>", "<attribute name=\"uv\"><list><text/></list></attribute>"},
        {"<value type=\"string\">uv</value>", "<value type=\"token\">uv</value>"},
        {"<value type=\"string\">uv</value>", "<value>uv</value>"},
        {"<value type=\"string\">uv</value>", "<data type=\"string\"/>"},
        {"<attribute name=\"stream\">\n            <value",
         "<attribute name=\"s\">\n            <value"},
        {"<data type=\"int\">", "<data type=\"short\">"},
        {"<param name=\"minLength\">1<", "<param name=\"minLength\">2<"},
        {"<param name=\"minLength\">1<", "<param name=\"maxLength\">1<"},
        {"<param name=\"pattern\">-?[0-9]+<", "<param name=\"pattern\">-?\\d+<"},
        {"<param name=\"pattern\">-?[0-9]+<", "<param name=\"minInclusive\">1<"},
        {"<start>", "<div>"},
    };
    for (const auto& row : rows) {
        std::string changed = text;
        const std::size_t place = changed.find(row.Old);
        ASSERT_NE(place, std::string::npos) << row.Old;
        changed.replace(place, std::string(row.Old).size(), row.New);
        if (std::string(row.New) == "<div>")
            changed.replace(changed.find("</start>"), 8, "</div>");
        EXPECT_THROW(MaterialSchema{changed}, std::logic_error) << row.New;
    }
}

} // namespace
