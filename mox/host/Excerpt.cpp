#include "mox/host/Excerpt.h"

#include <libxml/parserInternals.h>
#include <libxml/xmlstring.h>

#include <algorithm>

namespace Mox::Host {

namespace {

struct Character
{
    char32_t Code;
    std::size_t Length; ///< in bytes
};

/// Decodes the first character of a non-empty string. A byte that does not start a UTF-8 character
/// is returned as a code point of the same value.
Character FirstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            return {lead, 1};
        code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    }
    return {code, length};
}

/// Returns whether a character controls the terminal, starts a new line, or changes the direction
/// of the surrounding text.
bool IsControl(char32_t code)
{
    const bool isC0OrC1 = code < 0x20 || (code >= 0x7F && code <= 0x9F);
    const bool isSeparatorOrEmbedding = code >= 0x2028 && code <= 0x202E;
    const bool isIsolate = code >= 0x2066 && code <= 0x2069;
    const bool isDirectionMark = code == 0x200E || code == 0x200F || code == 0x061C;
    return isC0OrC1 || isSeparatorOrEmbedding || isIsolate || isDirectionMark;
}

std::string Shorten(std::string_view text, std::size_t mostBytes)
{
    std::string line;
    while (!text.empty()) {
        const Character next = FirstCharacter(text);
        if (line.size() + next.Length > mostBytes)
            return line + "...";
        if (IsControl(next.Code))
            line += ' ';
        else
            line += text.substr(0, next.Length);
        text.remove_prefix(next.Length);
    }
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

bool IsXmlText(std::string_view text)
{
    while (!text.empty()) {
        int size = static_cast<int>(std::min<std::size_t>(text.size(), 4));
        const int character =
            xmlGetUTF8Char(reinterpret_cast<const unsigned char*>(text.data()), &size);
        if (character < 0 || !IS_CHAR(character))
            return false;
        text.remove_prefix(static_cast<std::size_t>(size));
    }
    return true;
}

} // namespace Mox::Host
