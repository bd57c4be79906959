#include "mox/host/Icon.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <X11/xpm.h>
#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <sstream>
#include <string_view>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Rgba = std::array<std::uint8_t, 4>;

/// "None" or "#RRGGBB".
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
    constexpr std::size_t mostPixels = 1024; // on a side
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
        throw HostError({}, Compose("the header of the icon is not width, height, number of "
                                    "colours and length of keys, but \"",
                                    row, "\""));
    }
    return header;
}

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Takes the next word off a text.
/// @returns nothing at its end
std::string_view TakeWord(std::string_view& text)
{
    const auto* begin = std::find_if_not(text.begin(), text.end(), IsBlank);
    const auto* end = std::find_if(begin, text.end(), IsBlank);
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    return {begin, end};
}

/// Whether a colour row has a colour for colour screens, "c" and a value, after its key.
bool HasColour(std::string_view row, std::size_t keyLength)
{
    if (row.size() < keyLength)
        return false;
    row.remove_prefix(keyLength);
    for (;;) {
        const std::string_view visual = TakeWord(row);
        if (TakeWord(row).empty())
            return false;
        if (visual == "c")
            return true;
    }
}

} // namespace

XpmTable CopyXpm(const char* const* table)
{
    XpmTable rows;
    const auto copyRow = [&]() -> const std::string& {
        const char* row = table[rows.size()];
        if (!row)
            throw HostError({}, Compose("row ", rows.size() + 1, " of the icon is null"));
        return rows.emplace_back(row);
    };
    const XpmHeader header = ReadHeader(copyRow());
    for (std::size_t i = 0; i < header.ColourCount; ++i) {
        if (!HasColour(copyRow(), header.KeyLength))
            throw HostError({}, Compose("row ", rows.size(), " of the icon has no colour"));
    }
    for (std::size_t i = 0; i < header.Height; ++i) {
        if (copyRow().size() < header.Width * header.KeyLength)
            throw HostError({}, Compose("row ", rows.size(), " of the icon is too short"));
    }
    return rows;
}

Picture DecodeXpm(const XpmTable& table)
{
    std::vector<char*> rows;
    for (const std::string& row : table)
        rows.push_back(
            const_cast<char*>(row.c_str())); // libXpm only reads, but is older than const
    XpmImage image{};
    if (XpmCreateXpmImageFromData(rows.data(), &image, nullptr) != XpmSuccess)
        throw HostError({}, "the icon is no XPM image");
    const std::unique_ptr<XpmImage, void (*)(XpmImage*)> owner(&image, XpmFreeXpmImage);
    Picture icon{image.width, image.height, {}};
    const std::size_t pixelCount = std::size_t(image.width) * image.height;
    icon.Pixels.reserve(pixelCount * 4);
    for (std::size_t i = 0; i < pixelCount; ++i) {
        const Rgba colour = ParseColour(image.colorTable[image.data[i]].c_color);
        icon.Pixels.insert(icon.Pixels.end(), colour.begin(), colour.end());
    }
    return icon;
}

} // namespace Mox::Host
