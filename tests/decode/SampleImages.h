#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Make image files from the red, green, blue and alpha of each texel, rows from the top.
std::string MakePng(std::uint32_t width, std::uint32_t height,
                    const std::vector<std::uint8_t>& components);
std::string MakePng16(std::uint32_t width, std::uint32_t height,
                      const std::vector<std::uint16_t>& components);
std::string MakeJpeg(std::uint32_t width, std::uint32_t height,
                     const std::vector<std::uint8_t>& components);

/// @param left,top start of the stored window; the display window starts at 0, 0
std::string MakeExr(std::uint32_t width, std::uint32_t height, const std::vector<float>& components,
                    int left = 0, int top = 0);

/// Makes the header of a PNG file for an image of this size, without any texels.
std::string MakePngHeader(std::uint32_t width, std::uint32_t height);

/// The same for a JPEG file.
std::string MakeJpegHeader(std::uint32_t width, std::uint32_t height);

/// The same for a Radiance file.
std::string MakeHdrHeader(int width, int height);
