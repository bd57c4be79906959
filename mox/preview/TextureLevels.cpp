#include "mox/preview/TextureLevels.h"

#include "mox/preview/TexelCodec.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <glm/vec4.hpp>
#include <utility>

namespace Mox::Host {

namespace {

std::uint32_t StandInLayers(TextureShape shape)
{
    return shape == TextureShape::Cube ? cubeFaces : 1;
}

struct Span
{
    std::uint32_t Begin;
    std::uint32_t End;
};

/// The texels of a side that one texel of a smaller side covers.
Span Covered(std::uint32_t texel, std::uint32_t side, std::uint32_t smallerSide)
{
    return {texel * side / smallerSide, (texel + 1) * side / smallerSide};
}

/// @param halvesLayers whether layers are a third dimension
TextureImage Halve(const TextureImage& image, bool halvesLayers, const TexelCodec& codec)
{
    TextureImage half{std::max(1u, image.Width / 2),
                      std::max(1u, image.Height / 2),
                      image.Format,
                      {},
                      halvesLayers ? std::max(1u, image.Layers / 2) : image.Layers};
    for (std::uint32_t z = 0; z < half.Layers; ++z) {
        for (std::uint32_t y = 0; y < half.Height; ++y) {
            for (std::uint32_t x = 0; x < half.Width; ++x) {
                // If a size is odd, some texels cover three texels of the image along it.
                const Span columns = Covered(x, image.Width, half.Width);
                const Span rows = Covered(y, image.Height, half.Height);
                const Span layers = Covered(z, image.Layers, half.Layers);
                glm::vec4 sum(0.0f);
                float count = 0.0f;
                for (std::uint32_t k = layers.Begin; k < layers.End; ++k) {
                    for (std::uint32_t j = rows.Begin; j < rows.End; ++j) {
                        for (std::uint32_t i = columns.Begin; i < columns.End; ++i) {
                            sum += codec.Read(image, i, k * image.Height + j);
                            count += 1.0f;
                        }
                    }
                }
                codec.Append(sum / count, half);
            }
        }
    }
    return half;
}

} // namespace

TextureImage MakeCheckerImage(TextureShape shape)
{
    const bool isVolume = shape == TextureShape::Volume;
    const std::uint32_t side = isVolume ? 32 : 256;
    const std::uint32_t checkSize = side / 8;
    TextureImage image{side, side, TexelFormat::Unorm8, {}, isVolume ? side : StandInLayers(shape)};
    constexpr std::byte light{200};
    constexpr std::byte dark{120};
    for (std::uint32_t z = 0; z < image.Layers; ++z) {
        for (std::uint32_t y = 0; y < side; ++y) {
            for (std::uint32_t x = 0; x < side; ++x) {
                const bool isLight = (x / checkSize + y / checkSize + z / checkSize) % 2 == 0;
                const std::byte grey = isLight ? light : dark;
                image.Bytes.insert(image.Bytes.end(), {grey, grey, grey, std::byte{255}});
            }
        }
    }
    return image;
}

TextureImage MakeFlatNormalImage(TextureShape shape)
{
    // Bytes cannot represent 0.5 exactly.
    constexpr float flat[] = {0.5f, 0.5f, 1.0f, 0.5f};
    TextureImage image{1, 1, TexelFormat::Float, {}, StandInLayers(shape)};
    for (std::uint32_t layer = 0; layer < image.Layers; ++layer) {
        const auto* bytes = reinterpret_cast<const std::byte*>(flat);
        image.Bytes.insert(image.Bytes.end(), bytes, bytes + sizeof(flat));
    }
    return image;
}

TextureImage ToLinearFloats(const TextureImage& image, bool isSrgb)
{
    const TexelCodec source(image.Format, isSrgb);
    const TexelCodec target(TexelFormat::Float, false);
    TextureImage floats{image.Width, image.Height, TexelFormat::Float, {}, image.Layers};
    for (std::uint32_t y = 0; y < image.Height * image.Layers; ++y) {
        for (std::uint32_t x = 0; x < image.Width; ++x)
            target.Append(source.Read(image, x, y), floats);
    }
    return floats;
}

std::vector<TextureImage> MakeMipLevels(TextureImage image, TextureShape shape, bool isSrgb)
{
    const bool isVolume = shape == TextureShape::Volume;
    const TexelCodec codec(image.Format, isSrgb);
    std::vector<TextureImage> levels;
    levels.push_back(std::move(image));
    while (levels.back().Width > 1 || levels.back().Height > 1 ||
           (isVolume && levels.back().Layers > 1))
        levels.push_back(Halve(levels.back(), isVolume, codec));
    return levels;
}

} // namespace Mox::Host
