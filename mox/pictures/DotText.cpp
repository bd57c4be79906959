#include "mox/pictures/DotText.h"

#include "mox/Text.h"

#include <libxml/parserInternals.h>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::string_view replacement = "\xEF\xBF\xBD";

struct Character
{
    std::size_t Length; ///< in bytes
    bool IsPrintable;
};

/// Returns the first character of a text that is not empty.
Character FirstCharacter(std::string_view text)
{
    // The decoder reads a few bytes past the end, which must be zero.
    const std::string head(text.substr(0, 4));
    int length = static_cast<int>(head.size());
    const int code = xmlGetUTF8Char(reinterpret_cast<const unsigned char*>(head.c_str()), &length);
    if (code <= 0)
        return {1, false};
    constexpr int firstPrintable = 0x20;
    constexpr int deleteCharacter = 0x7f;
    constexpr int lastControl = 0x9f;
    const bool isControl =
        code < firstPrintable || (code >= deleteCharacter && code <= lastControl);
    return {static_cast<std::size_t>(length), !isControl && IS_CHAR(code)};
}

/// Calls take with each sanitized character; every kind of line break becomes "\n".
template <class Take>
void ForEachCharacter(std::string_view text, Take take)
{
    while (!text.empty()) {
        const Character first = FirstCharacter(text);
        std::string_view character = first.IsPrintable ? text.substr(0, first.Length) : replacement;
        std::size_t length = first.Length;
        if (text.front() == '\n' || text.front() == '\r') {
            character = "\n";
            length = text.starts_with("\r\n") ? 2 : 1;
        } else if (text.front() == '\t') {
            character = " ";
        }
        take(character);
        text.remove_prefix(length);
    }
}

/// @param backslash replacement for a backslash, which would start an escape sequence
std::string EscapeTags(std::string_view text, std::string_view backslash)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\n':
            escaped += "&#10;";
            break;
        case '\\':
            escaped += backslash;
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string Clean(std::string_view text, std::string_view lineEnd)
{
    std::string cleaned;
    ForEachCharacter(text, [&](std::string_view character) {
        cleaned += character == "\n" ? lineEnd : character;
    });
    return cleaned;
}

// Graphviz interprets escape sequences once in labels and twice in other attributes.
constexpr std::string_view labelBackslash = R"(\\)";
constexpr std::string_view attributeBackslash = R"(\\\\)";

} // namespace

std::string QuoteTooltip(std::string_view text)
{
    return Compose("\"", EscapeTags(Clean(text, "\n"), attributeBackslash), "\"");
}

std::string EscapeLabel(std::string_view text)
{
    constexpr std::string_view blank = "&#160;"; // an empty element is not valid in a label
    return text.empty() ? std::string(blank) : EscapeTags(Clean(text, " "), labelBackslash);
}

std::string EscapeTooltip(std::string_view text)
{
    return EscapeTags(Clean(text, "\n"), labelBackslash);
}

std::string Shorten(std::string_view text, std::size_t maxLength)
{
    std::string shortened;
    std::size_t lastStart = 0;
    std::size_t length = 0;
    ForEachCharacter(text, [&](std::string_view character) {
        if (++length > maxLength)
            return;
        lastStart = shortened.size();
        shortened += character;
    });
    return length <= maxLength ? shortened : shortened.substr(0, lastStart) + "…";
}

std::string WrapLabel(std::string_view text, std::size_t lineLength)
{
    constexpr std::string_view lineEnd = "<BR ALIGN=\"LEFT\"/>";
    std::string lines;
    std::string line;
    std::string word;
    std::size_t lineSize = 0;
    std::size_t wordSize = 0;
    const auto endLine = [&] {
        lines += Compose(EscapeLabel(line), lineEnd);
        line.clear();
        lineSize = 0;
    };
    const auto endWord = [&] {
        if (lineSize > 0 && lineSize + 1 + wordSize > lineLength)
            endLine();
        line += (lineSize > 0 ? " " : "") + word;
        lineSize += wordSize + (lineSize > 0 ? 1 : 0);
        word.clear();
        wordSize = 0;
    };
    ForEachCharacter(text, [&](std::string_view character) {
        if (character == " " || character == "\n") {
            endWord();
            if (character == "\n")
                endLine();
            return;
        }
        if (wordSize == lineLength)
            endWord();
        word += character;
        ++wordSize;
    });
    endWord();
    endLine();
    return lines;
}

} // namespace Mox::Host
