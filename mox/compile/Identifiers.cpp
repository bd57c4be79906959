#include "mox/compile/Identifiers.h"

#include "mox/Identifier.h"

namespace Mox::Host {

std::string
RenameIdentifiers(std::string_view text,
                  const std::function<std::string(std::string_view name, bool afterDot)>& rename)
{
    std::string result;
    std::size_t copied = 0;
    ForEachWord(text, [&](std::string_view word, std::size_t at) {
        if (!IsIdentifierStart(word.front()))
            return;
        result += text.substr(copied, at - copied);
        result += rename(word, at > 0 && text[at - 1] == '.');
        copied = at + word.size();
    });
    result += text.substr(copied);
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
