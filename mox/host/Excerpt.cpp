#include "mox/host/Excerpt.h"

#include <algorithm>

namespace Mox::Host {

std::string ToOneLine(std::string text)
{
    const auto isControl = [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
    };
    std::replace_if(text.begin(), text.end(), isControl, ' ');
    return text;
}

std::string Excerpt(std::string_view text)
{
    constexpr std::size_t mostBytes = 60;
    std::size_t end = text.size();
    if (end > mostBytes) {
        end = mostBytes;
        const auto continues = [&](std::size_t i) {
            return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
        };
        while (end > 0 && continues(end))
            --end;
    }
    return "\"" + ToOneLine(std::string(text.substr(0, end))) +
           (end < text.size() ? "...\"" : "\"");
}

} // namespace Mox::Host
