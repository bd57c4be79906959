#include "mox/host/Xpm.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <sstream>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Rgba = std::array<std::uint8_t, 4>;

/// Parses "None" or "#RRGGBB".
Rgba ParseColour(std::string_view text)
{
    constexpr std::uint8_t opaque = 255;
    if (!text.starts_with('#'))
        return {};
    std::uint32_t value = 0;
    std::from_chars(text.data() + 1, text.data() + text.size(), value, 16);
    return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value), opaque};
}

struct XpmHeader
{
    std::size_t Width = 0;
    std::size_t Height = 0;
    std::size_t ColourCount = 0;
    std::size_t KeyLength = 0;
};

XpmHeader ReadHeader(const std::string& row)
{
    constexpr std::size_t mostPixels = 1024; // per side
    constexpr std::size_t mostColours = 65536;
    constexpr std::size_t longestKey = 4;
    XpmHeader header;
    std::istringstream stream(row);
    stream >> header.Width >> header.Height >> header.ColourCount >> header.KeyLength;
    const auto isWithin = [](std::size_t value, std::size_t most) {
        return value > 0 && value <= most;
    };
    if (!stream || !(stream >> std::ws).eof() || !isWithin(header.Width, mostPixels) ||
        !isWithin(header.Height, mostPixels) || !isWithin(header.ColourCount, mostColours) ||
        !isWithin(header.KeyLength, longestKey)) {
        throw HostError({}, Compose("invalid icon header, expected the width, height, number of "
                                    "colours and key length: ",
                                    Excerpt(row)));
    }
    return header;
}

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Removes the next word from a string.
/// @returns an empty view at the end of the string
std::string_view TakeWord(std::string_view& text)
{
    const auto* begin = std::find_if_not(text.begin(), text.end(), IsBlank);
    const auto* end = std::find_if(begin, text.end(), IsBlank);
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    return {begin, end};
}

/// Returns the colour for colour displays from a colour row: the value of "c" after the key.
/// Returns an empty string if there is none.
std::string_view FindColour(std::string_view row, std::size_t keyLength)
{
    if (row.size() < keyLength)
        return {};
    row.remove_prefix(keyLength);
    for (;;) {
        const std::string_view visual = TakeWord(row);
        const std::string_view colour = TakeWord(row);
        if (colour.empty() || visual == "c")
            return colour;
    }
}

} // namespace

XpmTable CopyXpm(const char* const* table)
{
    XpmTable rows;
    const auto copyRow = [&]() -> const std::string& {
        const char* row = table[rows.size()];
        if (!row)
            throw HostError({}, Compose("row ", rows.size() + 1, " of the icon is missing"));
        return rows.emplace_back(row);
    };
    const XpmHeader header = ReadHeader(copyRow());
    for (std::size_t i = 0; i < header.ColourCount; ++i) {
        if (FindColour(copyRow(), header.KeyLength).empty())
            throw HostError({}, Compose("row ", rows.size(), " of the icon has no colour"));
    }
    for (std::size_t i = 0; i < header.Height; ++i) {
        if (copyRow().size() < header.Width * header.KeyLength)
            throw HostError({}, Compose("row ", rows.size(), " of the icon is too short"));
    }
    return rows;
}

XpmTable ParseXpm(std::string_view source)
{
    XpmTable rows;
    for (std::size_t start = source.find('"'); start != std::string_view::npos;
         start = source.find('"')) {
        source.remove_prefix(start + 1);
        const std::size_t end = source.find_first_of("\"\n");
        if (end == std::string_view::npos || source[end] == '\n') {
            throw HostError(
                {}, Compose("row ", rows.size() + 1, " of the icon has no closing quotation mark"));
        }
        rows.emplace_back(source.substr(0, end));
        source.remove_prefix(end + 1);
    }
    DecodeXpm(rows);
    return rows;
}

Picture DecodeXpm(const XpmTable& table)
{
    std::vector<const char*> pointers;
    for (const std::string& row : table)
        pointers.push_back(row.c_str());
    pointers.push_back(nullptr);
    const XpmTable rows = CopyXpm(pointers.data());
    const XpmHeader header = ReadHeader(rows.front());

    std::map<std::string_view, Rgba> colours;
    for (std::size_t i = 1; i <= header.ColourCount; ++i) {
        const std::string_view row = rows[i];
        colours.emplace(row.substr(0, header.KeyLength),
                        ParseColour(FindColour(row, header.KeyLength)));
    }
    Picture icon{
        static_cast<std::uint32_t>(header.Width), static_cast<std::uint32_t>(header.Height), {}};
    icon.Pixels.reserve(header.Width * header.Height * 4);
    for (std::size_t i = 1 + header.ColourCount; i < rows.size(); ++i) {
        const std::string_view row = rows[i];
        for (std::size_t x = 0; x < header.Width; ++x) {
            const auto colour = colours.find(row.substr(x * header.KeyLength, header.KeyLength));
            if (colour == colours.end())
                throw HostError(
                    {}, Compose("row ", i + 1,
                                " of the icon contains a pixel with an undefined colour key"));
            icon.Pixels.insert(icon.Pixels.end(), colour->second.begin(), colour->second.end());
        }
    }
    return icon;
}

} // namespace Mox::Host
