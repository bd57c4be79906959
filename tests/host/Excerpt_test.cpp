#include "mox/host/Excerpt.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

TEST(Excerpt, MessagesHoldNothingThatATerminalActsOn)
{
    const std::pair<std::string, std::string> rows[] = {
        {"a\x1b[31mb\tc\nd\x7f", "a [31mb c d "},
        {"\xc2\x9b"
         "31m \xc2\x85.",
         " 31m  ."},
        {"\u202eevil\u202c \u2066x\u2069 \u200f\u061c\u2028.", " evil   x     ."},
        {"\xe0\x80\x9b[31m", " [31m"}, // an overlong encoding of the escape character
        {"\x9b"
         "31m",
         " 31m"},
        {"no\xff utf\xe9", "no\xff utf\xe9"},
        {"é – 材质 😀 \xc2\xa0", "é – 材质 😀 \xc2\xa0"},
    };
    for (const auto& [text, line] : rows) {
        EXPECT_EQ(MessageLine(text), line);
        EXPECT_EQ(Excerpt(text), "\"" + line + "\"");
    }
    const std::string most(3999, 'a');
    EXPECT_EQ(MessageLine(most + "bc"), most + "b...");
    EXPECT_EQ(MessageLine(most + "é"), most + "...") << "no half character";
}

} // namespace
