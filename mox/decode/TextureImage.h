#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Mox::Host {

enum class TexelFormat
{
    Unorm8, ///< four bytes, each from 0 to 1
    Float,  ///< four floats
};

constexpr std::size_t SizeOfTexel(TexelFormat format)
{
    return format == TexelFormat::Unorm8 ? 4 : 4 * sizeof(float);
}

/// The texels of a texture: one layer after another, rows from top to bottom, each texel red,
/// green, blue, alpha. Values are those that the file stores; colours are not converted.
struct TextureImage
{
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    TexelFormat Format = TexelFormat::Unorm8;
    std::vector<std::byte> Bytes;
    std::uint32_t Layers = 1; ///< faces of a cube map or slices of a volume, each of this size
};

} // namespace Mox::Host
