#include "mox/nodefile/NodeText.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <algorithm>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::string_view spaces = " \t\r\n";

} // namespace

NodeConditions ParseNodeConditions(std::string_view text, const Place& where)
{
    NodeConditions conditions = ParseConditions(text);
    for (const Condition& condition : conditions) {
        if (condition.Name.empty() || condition.Values.empty()) {
            throw HostError(where, Compose("the condition ", Excerpt(text),
                                           " is not of the form \"Property=value, value\""));
        }
    }
    return conditions;
}

std::optional<OpenCode> FindOpenCode(std::string_view code, bool isExpression)
{
    std::string open; // expected closing brackets
    int line = 0;
    for (std::size_t at = 0; at < code.size(); ++at) {
        const char c = code[at];
        const std::string_view two = code.substr(at, 2);
        if (c == '\n') {
            ++line;
        } else if (isExpression && (c == ';' || two == "//" || two == "/*")) {
            return OpenCode{line, "an expression cannot contain a semicolon or a comment"};
        } else if (two == "//") {
            at = std::min(code.find('\n', at), code.size()) - 1;
        } else if (two == "/*") {
            const std::size_t end = code.find("*/", at + 2);
            if (end == std::string_view::npos)
                return OpenCode{line, "unterminated comment"};
            line +=
                static_cast<int>(std::count(code.begin() + static_cast<std::ptrdiff_t>(at),
                                            code.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
            at = end + 1;
        } else if (c == '#' || c == '\\' || c == '"') {
            return OpenCode{line, Compose("unexpected character ", Excerpt(code.substr(at, 1)))};
        } else if (c == '(' || c == '[' || c == '{') {
            open += c == '(' ? ')' : c == '[' ? ']' : '}';
        } else if (c == ')' || c == ']' || c == '}') {
            if (open.empty() || open.back() != c)
                return OpenCode{line, Compose("unmatched \"", code.substr(at, 1), "\"")};
            open.pop_back();
        }
    }
    if (!open.empty())
        return OpenCode{line, Compose("missing \"", open.substr(open.size() - 1), "\"")};
    return std::nullopt;
}

std::string TakeLines(std::string_view text, std::string_view indentation)
{
    std::vector<std::string_view> lines;
    std::size_t indent = std::string_view::npos;
    bool isFirst = true;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t first = line.find_first_not_of(spaces);
        if (first == std::string_view::npos)
            line = {};
        else if (!isFirst) // the first line's indentation precedes the start tag
            indent = std::min(indent, first);
        isFirst = false;
        if (!line.empty() || !lines.empty())
            lines.push_back(line);
    }
    while (!lines.empty() && lines.back().empty())
        lines.pop_back();
    std::string result;
    for (std::string_view line : lines) {
        if (!line.empty()) {
            line.remove_prefix(std::min(line.find_first_not_of(spaces), indent));
            result += Compose(indentation, line);
        }
        result += '\n';
    }
    return result;
}

std::string TakeWords(std::string_view text)
{
    std::string words;
    for (std::string_view rest = TrimSpaces(text); !rest.empty(); rest = TrimSpaces(rest)) {
        const std::size_t end = std::min(rest.find_first_of(spaces), rest.size());
        words += Compose(words.empty() ? "" : " ", rest.substr(0, end));
        rest.remove_prefix(end);
    }
    return words;
}

} // namespace Mox::Host
