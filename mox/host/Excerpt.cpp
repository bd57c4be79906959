#include "mox/host/Excerpt.h"

namespace Mox::Host {

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
    std::string excerpt = "\"";
    for (const char c : text.substr(0, end))
        excerpt += static_cast<unsigned char>(c) < ' ' || c == '\x7F' ? ' ' : c;
    return excerpt + (end < text.size() ? "...\"" : "\"");
}

} // namespace Mox::Host
