#include "mox/compile/NestingLimit.h"

#include "mox/Text.h"

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;

namespace {

/// The length of the comment at the start of a text; 0 if there is none.
std::size_t CommentLength(std::string_view text)
{
    if (text.starts_with("//"))
        return std::min(text.find('\n'), text.size());
    if (!text.starts_with("/*"))
        return 0;
    const std::size_t end = text.find("*/", 2);
    return end == std::string_view::npos ? text.size() : end + 2;
}

} // namespace

std::optional<FrontEndMessage> FindDeepNesting(std::string_view program)
{
    constexpr int deepest = 256;
    constexpr int mostOperators = 4096;
    constexpr std::string_view operators = "+-*/%<>=!&|^~?:.([";
    int line = 1;
    int depth = 0;
    int parentheses = 0; // a ";" among them, as in a "for", ends no statement
    int operatorCount = 0;
    for (std::size_t at = 0; at < program.size(); ++at) {
        if (const std::size_t length = CommentLength(program.substr(at)); length > 0) {
            const std::string_view comment = program.substr(at, length);
            line += static_cast<int>(std::count(comment.begin(), comment.end(), '\n'));
            at += length - 1;
            continue;
        }
        const char c = program[at];
        if (c == '\n')
            ++line;
        const int step = (c == '(' || c == '[' || c == '{') - (c == ')' || c == ']' || c == '}');
        depth = std::max(depth + step, 0);
        if (c == '(' || c == ')')
            parentheses = std::max(parentheses + step, 0);
        if (c == '{' || c == '}' || (c == ';' && parentheses == 0))
            operatorCount = 0;
        else if (operators.find(c) != std::string_view::npos)
            ++operatorCount;
        if (depth > deepest)
            return FrontEndMessage{line,
                                   Compose("brackets are nested more than ", deepest, " deep")};
        if (operatorCount > mostOperators)
            return FrontEndMessage{
                line, Compose("a statement has more than ", mostOperators, " operators")};
    }
    return std::nullopt;
}

} // namespace Mox::Host
