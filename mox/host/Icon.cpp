#include "mox/host/Icon.h"

#include "mox/host/HostError.h"

#include <X11/xpm.h>
#include <array>
#include <charconv>
#include <memory>
#include <string_view>

namespace Mox::Host {

namespace {

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

} // namespace

Picture DecodeXpm(const char* const* table)
{
    XpmImage image{};
    // libXpm only reads the table, but its interface predates const.
    if (XpmCreateXpmImageFromData(const_cast<char**>(table), &image, nullptr) != XpmSuccess)
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
