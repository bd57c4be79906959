#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Image files of the red, green, blue, alpha of their texels, rows from the top.
std::string MakePng(std::uint32_t width, std::uint32_t height,
                    const std::vector<std::uint8_t>& components);
std::string MakePng16(std::uint32_t width, std::uint32_t height,
                      const std::vector<std::uint16_t>& components);
std::string MakeJpeg(std::uint32_t width, std::uint32_t height,
                     const std::vector<std::uint8_t>& components);

/// @param left,top where the stored window begins; the display window begins at 0, 0
std::string MakeExr(std::uint32_t width, std::uint32_t height, const std::vector<float>& components,
                    int left = 0, int top = 0);

/// A header of a PNG file for an image of that size, without any of its texels.
std::string MakePngHeader(std::uint32_t width, std::uint32_t height);

/// Of a JPEG file.
std::string MakeJpegHeader(std::uint32_t width, std::uint32_t height);

/// Of a Radiance file.
std::string MakeHdrHeader(int width, int height);
