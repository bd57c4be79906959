#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace Mox::Host {

/// A picture: rows from top to bottom, four bytes for each pixel, red, green, blue, alpha.
struct Icon
{
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    std::vector<std::uint8_t> Pixels;
};

/// Decodes an XPM table such as stands in a catalogue row. The table must be well-formed: its
/// length is not known here.
/// @throws HostError if it cannot be decoded
Icon DecodeXpm(const char* const* table);

/// @throws HostError if the file cannot be written
void WritePng(const Icon& icon, const std::filesystem::path& file);

} // namespace Mox::Host
