#include "mox/document/TextPattern.h"
#include "tests/support/DocumentMaker.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

namespace {

using namespace Mox::Host;

/// The short ones among the texts that an expression means.
using Language = std::set<std::string>;

constexpr std::size_t longest = 3;

Language Join(const Language& left, const Language& right)
{
    Language joined;
    for (const std::string& begin : left) {
        for (const std::string& end : right) {
            if (begin.size() + end.size() <= longest)
                joined.insert(begin + end);
        }
    }
    return joined;
}

Language Unite(Language left, const Language& right)
{
    left.insert(right.begin(), right.end());
    return left;
}

/// An expression and what it means.
struct Expression
{
    std::string Text;
    Language Texts;
};

/// Expressions of all forms, from a random source.
class ExpressionMaker
{
public:
    explicit ExpressionMaker(DocumentMaker& random) : _random(random) {}

    Expression MakeAlternatives(int depth)
    {
        Expression made = MakeSequence(depth);
        while (_random.Below(3) == 0) {
            const Expression other = MakeSequence(depth);
            made = {made.Text + "|" + other.Text, Unite(made.Texts, other.Texts)};
        }
        return made;
    }

private:
    Expression MakeSequence(int depth)
    {
        Expression made = {"", {""}};
        for (std::size_t parts = _random.Below(4); parts > 0; --parts) {
            const Expression next = MakeRepeated(depth);
            made = {made.Text + next.Text, Join(made.Texts, next.Texts)};
        }
        return made;
    }

    Expression MakeRepeated(int depth)
    {
        const Expression once = MakeOne(depth);
        const Language& texts = once.Texts;
        const Language few =
            Unite(Unite(texts, Join(texts, texts)), Join(texts, Join(texts, texts)));
        switch (_random.Below(9)) {
        case 0:
            return {once.Text + "?", Unite(texts, {""})};
        case 1:
            return {once.Text + "*", Unite(few, {""})};
        case 2:
            return {once.Text + "+", few};
        case 3:
            return {once.Text + "{2}", Join(texts, texts)};
        case 4:
            return {once.Text + "{3}", Join(texts, Join(texts, texts))};
        default:
            return once;
        }
    }

    Expression MakeOne(int depth)
    {
        static const Expression simple[] = {
            {"a", {"a"}},
            {"b", {"b"}},
            {"-", {"-"}},
            {"\\.", {"."}},
            {"[ab]", {"a", "b"}},
            {"[.]", {"."}},
            {"[a-b\\-]", {"a", "b", "-"}},
        };
        if (depth == 0 || _random.Below(3) > 0)
            return simple[_random.Below(std::size(simple))];
        const Expression inner = MakeAlternatives(depth - 1);
        return {"(" + inner.Text + ")", inner.Texts};
    }

    DocumentMaker& _random;
};

Language AllTexts()
{
    const Language letters = {"", "a", "b", "-", "."};
    return Join(letters, Join(letters, letters));
}

TEST(TextPattern, MatchesWhatTheExpressionMeans)
{
    const std::uint32_t seed = DrawSeed();
    DocumentMaker random(seed);
    ExpressionMaker maker(random);
    const Language all = AllTexts();
    int compared = 0;
    for (int i = 0; i < 3000; ++i) {
        const Expression expression = maker.MakeAlternatives(2);
        std::unique_ptr<TextPattern> pattern;
        try {
            pattern = std::make_unique<TextPattern>(expression.Text);
        } catch (const std::logic_error&) {
            continue; // too many positions
        }
        ++compared;
        for (const std::string& text : all) {
            ASSERT_EQ(pattern->Matches(text), expression.Texts.contains(text))
                << "seed " << seed << ", " << expression.Text << " and \"" << text << "\"";
        }
    }
    EXPECT_GT(compared, 2000);
}

TEST(TextPattern, OtherCharactersNeverMatch)
{
    const TextPattern pattern("[a-z]+");
    EXPECT_TRUE(pattern.Matches("az"));
    for (const std::string& text :
         {std::string("\0", 1), std::string("a\0", 2), std::string("\xC3\xA9"), std::string("\x7F"),
          std::string(" a")})
        EXPECT_FALSE(pattern.Matches(text));
}

TEST(TextPattern, WhatIsNotUnderstoodIsRefused)
{
    const std::string tooLong(TextPattern::mostPositions + 1, 'a');
    EXPECT_NO_THROW(TextPattern(tooLong.substr(1)));
    const std::string refused[] = {tooLong, "(",    ")",   "a)", "[a",     "[]",      "[^a]",
                                   "[b-a]", "[a-]", "a**", "*",  "a{2,3}", "a{0}",    "a{12}",
                                   ".",     "^a$",  "\\d", "\\", "\\n",    "\xC3\xA9"};
    for (const std::string& expression : refused)
        EXPECT_THROW(TextPattern{expression}, std::logic_error) << expression;
}

} // namespace
