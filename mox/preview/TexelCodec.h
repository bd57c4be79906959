#pragma once

#include "mox/decode/DecodedFile.h"

#include <array>
#include <cstdint>
#include <glm/vec4.hpp>

namespace Mox::Host {

/// Reads and writes texels of one image format as values that can be averaged.
class TexelCodec
{
public:
    /// @param isSrgb whether bytes hold sRGB colours
    TexelCodec(TexelFormat format, bool isSrgb);

    /// @param y the row, counted from the first row of the first layer
    glm::vec4 Read(const TextureImage& image, std::uint32_t x, std::uint32_t y) const;

    void Append(const glm::vec4& value, TextureImage& image) const;

private:
    TexelFormat _format;
    bool _isSrgb;
    std::array<float, 256> _colours;
    std::array<float, 256> _alphas;
};

} // namespace Mox::Host
