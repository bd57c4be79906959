#include "mox/xml/XmlElement.h"

#include <algorithm>

namespace Mox::Host {

namespace {

/// Returns the column of a position in a string, in characters; 0 (unknown) if the line is very
/// long.
int ColumnOf(std::string_view text, std::size_t place)
{
    constexpr std::size_t longest = 10000;
    int column = 1;
    for (std::size_t i = place; i > 0 && text[i - 1] != '\n'; --i) {
        if (place - i >= longest)
            return 0;
        if ((static_cast<unsigned char>(text[i - 1]) & 0xC0) != 0x80)
            ++column;
    }
    return column;
}

/// Returns the position of an attribute in the start tag that begins at a given position.
std::size_t FindInTag(std::string_view text, std::size_t begin, std::string_view attribute)
{
    std::size_t place = text.find_first_of(" \t\r\n/>", begin);
    while (true) {
        const std::size_t name = text.find_first_not_of(" \t\r\n", place);
        const std::size_t end = text.find_first_of(" \t\r\n=>", name);
        if (end == std::string_view::npos || text[end] == '>')
            return begin;
        if (text.substr(name, end - name) == attribute)
            return name;
        const std::size_t quote = text.find_first_of("\"'", end);
        place = quote == std::string_view::npos ? quote : text.find(text[quote], quote + 1);
        if (place == std::string_view::npos)
            return begin;
        ++place;
    }
}

} // namespace

const std::string_view* FindValue(std::span<const XmlAttribute> attributes, std::string_view name)
{
    const auto found = std::ranges::find(attributes, name, &XmlAttribute::Name);
    return found == attributes.end() ? nullptr : &found->Value;
}

Place XmlElement::PlaceIn(const std::string& file) const
{
    return {file, Line, ColumnOf(Text, Begin)};
}

Place XmlElement::PlaceOf(std::string_view attribute, const std::string& file) const
{
    const std::size_t place = FindInTag(Text, Begin, attribute);
    const std::string_view before = Text.substr(Begin, place - Begin);
    const auto lines = static_cast<int>(std::count(before.begin(), before.end(), '\n'));
    return {file, Line + lines, ColumnOf(Text, place)};
}

} // namespace Mox::Host
