#include "mox/compile/Identifiers.h"

#include <algorithm>

namespace Mox::Host {

namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsStart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool IsPart(char c)
{
    return IsStart(c) || IsDigit(c);
}

} // namespace

bool IsIdentifier(std::string_view name)
{
    return !name.empty() && IsStart(name[0]) && std::all_of(name.begin(), name.end(), IsPart);
}

std::string
RenameIdentifiers(std::string_view text,
                  const std::function<std::string(std::string_view name, bool afterDot)>& rename)
{
    std::string result;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin + 1;
        if (!IsPart(text[begin])) {
            result += text[begin];
        } else {
            while (end < text.size() && IsPart(text[end]))
                ++end;
            const std::string_view word = text.substr(begin, end - begin);
            if (IsDigit(word[0]))
                result += word;
            else
                result += rename(word, begin > 0 && text[begin - 1] == '.');
        }
        begin = end;
    }
    return result;
}

std::set<std::string, std::less<>> CollectIdentifiers(std::string_view text)
{
    std::set<std::string, std::less<>> names;
    RenameIdentifiers(text, [&](std::string_view name, bool afterDot) {
        const bool isAttribute = text.substr(0, name.data() - text.data()).ends_with("[[");
        if (!afterDot && !isAttribute)
            names.emplace(name);
        return std::string(name);
    });
    return names;
}

} // namespace Mox::Host
