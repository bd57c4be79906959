#pragma once

#include <cstdint>
#include <filesystem>
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

} // namespace Mox::Host
