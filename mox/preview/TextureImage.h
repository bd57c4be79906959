#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace Mox::Host {

enum class TexelFormat
{
    Unorm8, ///< four bytes, each from 0 to 1
    Float,  ///< four floats
};

/// An image as a texture holds it: rows from top to bottom, red, green, blue, alpha. Values are as
/// stored in the file, without any conversion of colours.
struct TextureImage
{
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    TexelFormat Format = TexelFormat::Unorm8;
    std::vector<std::byte> Bytes;
};

/// Reads a PNG, JPEG or HDR (Radiance) file. What has more than eight bits becomes floats.
/// @throws HostError if the file cannot be read or is none of these
TextureImage ReadTextureImage(const std::filesystem::path& file);

/// Checks of two greys: stands in for an image that nobody names.
TextureImage MakeCheckerImage();

/// Stands in for a normal map: no bump anywhere, in both ways of storing normals.
TextureImage MakeFlatNormalImage();

/// The image and its smaller copies down to one texel, each half as wide and high as the one
/// before. Every texel is the mean of those that it covers.
/// @param isSrgb whether colours are sRGB, so that the mean must be that of the light
std::vector<TextureImage> MakeMipLevels(TextureImage image, bool isSrgb);

} // namespace Mox::Host
