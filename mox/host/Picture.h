#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// Pixels in rows from top to bottom, with four bytes per pixel: red, green and blue in sRGB, and
/// alpha.
struct Picture
{
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    std::vector<std::uint8_t> Pixels;
};

/// Maximum width and height of a PNG file.
constexpr std::uint32_t maxPngSide = 1'000'000;

/// @throws HostError if the file cannot be written
void WritePng(const Picture& picture, const std::filesystem::path& file);

/// The rows of an XPM image: header, colours, pixels.
using XpmTable = std::vector<std::string>;

/// Copies the icon of a catalogue row and checks that it can be decoded: it must have a header of
/// four numbers, all rows that the header declares, a colour in each colour row, and pixel rows of
/// the full width. The length of the table is unknown here, so if a table has fewer rows than
/// declared and is not null-terminated, it is read out of bounds.
/// @throws HostError naming the invalid row
XpmTable CopyXpm(const char* const* table);

/// Decodes the pixels of an icon. Colours are "None" or "#RRGGBB"; a colour name is treated as
/// "None".
/// @throws HostError as CopyXpm does, or if a pixel uses a key that the table does not define
Picture DecodeXpm(const XpmTable& table);

} // namespace Mox::Host
