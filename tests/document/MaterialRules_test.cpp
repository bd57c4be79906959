#include "mox/Text.h"
#include "mox/document/MaterialDocument.h"
#include "mox/document/MaterialRules.h"
#include "tests/support/DocumentMaker.h"
#include "tests/support/Files.h"
#include "tests/support/SchemaVerdict.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Mox::Host;
using Mox::Materials::Compose;

/// The reader's problems for a document, except those that a schema cannot express.
struct Verdict
{
    std::string Problems; ///< one per line
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
        // A schema cannot express either of these.
        verdict.IsBeyondSchema |= problem.Rule == "processing-instruction" ||
                                  problem.Message.find("xmlns") != std::string::npos;
    }
    return verdict;
}

std::vector<std::string> Split(const std::string& text)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, '|');)
        parts.push_back(part);
    return parts;
}

/// Corrupts the structure of a document at random.
class Breaker
{
public:
    explicit Breaker(Random& random) : _random(random) {}

    std::string Break(std::string text)
    {
        for (std::size_t count = 1 + _random.Below(3); count > 0; --count) {
            const std::size_t kind = _random.Below(12);
            if (kind == 0)
                AddMarkup(text);
            else if (kind < 4)
                ChangeTag(text);
            else
                ChangeAttribute(text);
        }
        return text;
    }

private:
    /// Returns the start of a random tag or comment.
    std::size_t FindTag(const std::string& text)
    {
        const std::size_t begin = text.rfind('<', _random.Below(text.size()));
        return begin == std::string::npos ? 0 : begin;
    }

    void AddMarkup(std::string& text)
    {
        // \xC2\xA0 is a space, but not XML white space.
        static const std::vector<std::string> pieces =
            Split("<node/>|<property/>|<nodes/>|<edges/>|<bindings/>|<renderState/>|"
                  "<description/>|<material version=\"1\"/>|<a/>|"
                  "<edge tail=\"\" tailPort=\"\" head=\"\" headPort=\"\"/>|"
                  "<nodes><node id=\"z\" type=\"\" version=\"0\"/></nodes>|"
                  "<property name=\"\" kind=\"bool\" value=\"true\"/>|"
                  "<binding stream=\"float\" tag=\"q\" min=\"0,  1\"/>|"
                  "<annotations/>|<annotation id=\"z\" kind=\"note\" text=\"\" x=\"0\" y=\"0\" "
                  "width=\"1\" height=\"1\"/>|"
                  "<binding stream=\"uv\" tag=\"q\"></binding>|<q:edges xmlns:q=\"urn:q\"/>|"
                  "<edges xmlns=\"urn:q\"/>|<edges xmlns=\"\"/>|<!-- -->|<![CDATA[ ]]>|"
                  "<![CDATA[a]]>|<![CDATA[]]>|<?a b?>|a|&#32;|&#65;|&amp;|\xC2\xA0| \t\r\n");
        text.insert(FindTag(text), _random.Pick(pieces));
    }

    /// Removes, moves or duplicates a tag, including what precedes the next one.
    void ChangeTag(std::string& text)
    {
        const std::size_t begin = FindTag(text);
        const std::string tag = text.substr(begin, text.find('<', begin + 1) - begin);
        const std::size_t change = _random.Below(3);
        if (change > 0)
            text.erase(begin, tag.size());
        if (change < 2 && !text.empty())
            text.insert(FindTag(text), tag);
    }

    /// Removes, moves, duplicates or adds an attribute.
    void ChangeAttribute(std::string& text)
    {
        static const std::vector<std::string> added =
            Split(" x=\"1\"| q:name=\"\"| xml:lang=\"\"| xmlns=\"urn:q\"| xmlns:q=\"urn:q\"");
        const std::size_t equals = text.find("=\"", _random.Below(text.size()));
        const std::size_t begin = text.rfind(' ', equals);
        const std::size_t end = text.find('"', equals + 2);
        if (equals == std::string::npos || begin == std::string::npos || end == std::string::npos)
            return;
        const std::size_t change = _random.Below(4);
        const std::string attribute =
            change == 3 ? _random.Pick(added) : text.substr(begin, end + 1 - begin);
        if (change < 2)
            text.erase(begin, attribute.size());
        const std::size_t place = text.find_first_of(" />", FindTag(text) + 1);
        if (change > 0 && place != std::string::npos)
            text.insert(place, attribute);
    }

    Random& _random;
};

/// Compares the rules with libxml2's verdict by the schema.
TEST(MaterialRules, RulesAndSchemaJudgeAlike)
{
    Random random(DrawSeed());
    DocumentMaker maker(random);
    Breaker breaker(random);
    int broken = 0;
    int valid = 0;
    for (int i = 0; i < 8000; ++i) {
        const std::string whole = FormatMaterialDocument(maker.Make());
        const std::string text = breaker.Break(whole.substr(whole.find('\n') + 1));
        const Verdict verdict = Judge(text);
        const bool isRight = verdict.Problems.empty();
        if (isRight || !verdict.IsBeyondSchema) {
            ASSERT_EQ(isRight, FollowsSchema(text)) << verdict.Problems << text;
        }
        broken += verdict.Problems.starts_with("schema");
        valid += isRight;
    }
    EXPECT_GT(broken, 1000);
    EXPECT_GT(valid, 50);
}

/// The rules and the schema accept the same values for every attribute that has its own data type.
TEST(MaterialRules, RulesAndSchemaJudgeValuesAlike)
{
    static constexpr const char* frames[] = {
        R"(<nodes><node type="" version="0" id="@"/></nodes>)",
        R"(<nodes><node type="" id="a" version="@"/></nodes>)",
        R"(<nodes><node type="" id="a" version="0">
           <property name="" kind="float" value="@"/></node></nodes>)",
        R"(<nodes><node type="" id="a" version="0">
           <property name="" kind="colour" value="@"/></node></nodes>)",
        R"(<bindings><binding tag="a" stream="float" min="@"/></bindings>)",
        R"(<renderState alphaRef="@"/>)",
        R"(<edges><edge tail="" tailPort="" head="" headPort="" points="@"/></edges>)",
        R"(<annotations><annotation id="a" kind="note" text="" x="@" y="0" width="1" height="1"/>
           </annotations>)",
        R"(<annotations><annotation id="a" kind="note" text="" x="0" y="0" width="@" height="1"/>
           </annotations>)",
        R"(<annotations><annotation id="a" kind="note" text="" x="0" y="0" width="1" height="1"
           colour="@"/></annotations>)",
    };
    static constexpr const char* pieces[] = {
        "0", "1",   "12",   ".",    "-",    "+",        "e",        "E",   "inf",   "nan",   ",",
        " ", "1.5", "0.25", "1e-3", "&#9;", "\xC3\xA9", "10000000", "4,5", "#12ab", "#00ff7"};
    Random random(DrawSeed());
    int valid = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string value;
        for (std::size_t count = random.Below(7); count > 0; --count)
            value += random.Pick(pieces);
        std::string text = std::string("<material version=\"2\">") + random.Pick(frames);
        text += "</material>";
        text.replace(text.find('@'), 1, value);
        const std::string problems = Judge(text).Problems;
        ASSERT_EQ(problems.empty(), FollowsSchema(text)) << problems << text;
        valid += problems.empty();
    }
    EXPECT_GT(valid, 2000);
}

/// Collects the attributes of an element and its descendants, and all values of enumerated
/// attributes.
void Collect(const ElementRule& rule, std::set<std::string>& names, std::set<std::string>& words)
{
    const auto add = [&](std::span<const AttributeRule> attributes) {
        for (const AttributeRule& attribute : attributes) {
            names.emplace(attribute.Name);
            words.insert(attribute.Value.Words.begin(), attribute.Value.Words.end());
        }
    };
    add(rule.Attributes);
    for (const ElementRule::Variant& variant : rule.Variants) {
        names.emplace(rule.Selector);
        words.emplace(variant.Word);
        add(variant.Attributes);
    }
    for (const ElementRule::Child& child : rule.Children)
        Collect(*child.Rule, names, words);
}

/// Collects the same from the schema.
void Collect(const std::string& schema, std::set<std::string>& names, std::set<std::string>& words)
{
    const auto collect = [&](const std::string& begin, char end, std::set<std::string>& found) {
        for (std::size_t place = 0; (place = schema.find(begin, place)) != std::string::npos;) {
            place += begin.size();
            found.insert(schema.substr(place, schema.find(end, place) - place));
        }
    };
    collect("<attribute name=\"", '"', names);
    collect("<value type=\"string\">", '<', words);
}

TEST(MaterialRules, EveryWordInEveryAttributeIsJudgedAlike)
{
    std::set<std::string> names;
    std::set<std::string> words;
    Collect(MaterialRule, names, words);
    Collect(ReadText(MOX_SCHEMA), names, words);
    std::vector<std::string> frames = {
        "<description @/>",
        "<renderState @/>",
        R"(<nodes><node id="a" type="" version="0" @/></nodes>)",
        R"(<nodes><node id="a" type="" version="0"><property name="" value="1" @/></node></nodes>)",
        R"(<edges><edge tail="" tailPort="" head="" headPort="" @/></edges>)",
        R"(<bindings><binding tag="a" @/></bindings>)",
        R"(<annotations><annotation id="a" text="" x="0" y="0" width="1" height="1" @/>
           </annotations>)",
    };
    for (const ElementRule::Variant& variant : BindingRule.Variants)
        frames.push_back(
            Compose("<bindings><binding tag='a' stream='", variant.Word, "' @/></bindings>"));
    int valid = 0;
    for (const std::string& frame : frames) {
        for (const std::string& name : names) {
            for (const std::string& word : words) {
                std::string text = "<material version='2'>" + frame + "</material>";
                text.replace(text.find('@'), 1, Compose(name, "='", word, "'"));
                const std::string problems = Judge(text).Problems;
                ASSERT_EQ(problems.empty(), FollowsSchema(text)) << problems << text;
                valid += problems.empty();
            }
        }
    }
    EXPECT_GT(valid, 1000);
}

} // namespace
