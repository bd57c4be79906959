#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// Rows from top to bottom, four bytes for each pixel: red, green, blue in sRGB, and alpha.
struct Picture
{
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    std::vector<std::uint8_t> Pixels;
};

/// Largest width and height of a picture in a PNG file.
constexpr std::uint32_t maxPngSide = 1'000'000;

/// @throws HostError if the file cannot be written
void WritePng(const Picture& picture, const std::filesystem::path& file);

/// The rows of an XPM image: header, colours, pixels.
using XpmTable = std::vector<std::string>;

/// Copies the icon of a catalogue row and checks that it can be decoded: a header of four numbers,
/// every row that it promises, a colour in each colour row, and pixel rows of the full width. The
/// length of the table itself is unknown here, so a table that has fewer rows than it promises and
/// does not end with a null is read beyond its end.
/// @throws HostError naming the row that is wrong
XpmTable CopyXpm(const char* const* table);

/// The pixels of an icon. Colours are "None" or "#RRGGBB"; a colour's name counts as "None".
/// @throws HostError as CopyXpm does, or if a pixel uses a key that the table does not define
Picture DecodeXpm(const XpmTable& table);

} // namespace Mox::Host
