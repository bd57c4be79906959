#include "mox/host/Excerpt.h"

#include <algorithm>

namespace Mox::Host {

namespace {

/// Where a text is cut so that no more bytes are left than that, and no half character.
std::size_t FindCut(std::string_view text, std::size_t mostBytes)
{
    if (text.size() <= mostBytes)
        return text.size();
    const auto continues = [&](std::size_t i) {
        return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
    };
    std::size_t end = mostBytes;
    while (end > 0 && continues(end))
        --end;
    return end;
}

bool IsControl(char c)
{
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

std::string Shorten(std::string_view text, std::size_t mostBytes)
{
    std::string line(text.substr(0, FindCut(text, mostBytes)));
    std::replace_if(line.begin(), line.end(), IsControl, ' ');
    if (line.size() < text.size())
        line += "...";
    return line;
}

} // namespace

std::string Excerpt(std::string_view text)
{
    constexpr std::size_t mostBytes = 60;
    return "\"" + Shorten(text, mostBytes) + "\"";
}

std::string MessageLine(std::string_view message)
{
    constexpr std::size_t mostBytes = 4000;
    return Shorten(message, mostBytes);
}

} // namespace Mox::Host
