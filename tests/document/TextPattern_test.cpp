#include "mox/document/TextPattern.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <memory>
#include <regex.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Mox::Host;

/// Any expression: alternatives of sequences of parts, down to a depth of groups.
std::string MakeExpression(Random& random, int depth)
{
    static constexpr const char* parts[] = {"a", "b", "-", "\\.", "[ab]", "[.]", "[a-b\\-]"};
    static constexpr const char* repeats[] = {"", "", "", "", "?", "*", "+", "{2}", "{3}"};
    std::string text;
    for (std::size_t count = random.Below(4); count > 0; --count) {
        const bool isGroup = depth > 0 && random.Below(3) == 0;
        text += isGroup ? "(" + MakeExpression(random, depth - 1) + ")" : random.Pick(parts);
        text += random.Pick(repeats);
    }
    return random.Below(3) == 0 ? text + "|" + MakeExpression(random, depth) : text;
}

/// All texts of up to three of the letters that expressions have.
std::vector<std::string> ShortTexts()
{
    std::vector<std::string> texts = {""};
    for (std::size_t i = 0; i < texts.size() && texts[i].size() < 3; ++i) {
        for (const char letter : {'a', 'b', '-', '.'})
            texts.push_back(std::string(texts[i]) + letter);
    }
    return texts;
}

/// An expression as POSIX understands it, which is the same as long as no text has a backslash.
class PosixPattern
{
public:
    explicit PosixPattern(const std::string& expression)
    {
        EXPECT_EQ(regcomp(&_pattern, ("^(" + expression + ")$").c_str(), REG_EXTENDED | REG_NOSUB),
                  0);
    }
    PosixPattern(const PosixPattern&) = delete;
    PosixPattern& operator=(const PosixPattern&) = delete;
    ~PosixPattern() { regfree(&_pattern); }

    bool Matches(const std::string& text) const
    {
        return regexec(&_pattern, text.c_str(), 0, nullptr, 0) == 0;
    }

private:
    regex_t _pattern;
};

TEST(TextPattern, MatchesWhatTheExpressionMeans)
{
    Random random(DrawSeed());
    int compared = 0;
    for (int i = 0; i < 3000; ++i) {
        const std::string expression = MakeExpression(random, 2);
        std::unique_ptr<TextPattern> pattern;
        try {
            pattern = std::make_unique<TextPattern>(expression);
        } catch (const std::logic_error&) {
            continue; // too many positions
        }
        ++compared;
        const PosixPattern meaning(expression);
        for (const std::string& text : ShortTexts())
            ASSERT_EQ(pattern->Matches(text), meaning.Matches(text))
                << expression << " and \"" << text << "\"";
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
