#include "mox/preview/TextureLevels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <glm/common.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace Mox::Host {

namespace {

constexpr std::size_t channels = 4;
constexpr float brightest = 255.0f;

template <class Value>
TextureImage MakeImage(std::uint32_t width, std::uint32_t height, TexelFormat format,
                       const Value* values)
{
    TextureImage image{width, height, format, {}};
    image.Bytes.resize(std::size_t(image.Width) * image.Height * channels * sizeof(Value));
    std::memcpy(image.Bytes.data(), values, image.Bytes.size());
    return image;
}

float ToLinear(float srgb)
{
    return srgb <= 0.04045f ? srgb / 12.92f : std::pow((srgb + 0.055f) / 1.055f, 2.4f);
}

float ToSrgb(float linear)
{
    return linear <= 0.0031308f ? linear * 12.92f : 1.055f * std::pow(linear, 1.0f / 2.4f) - 0.055f;
}

/// Returns the values that bytes represent.
std::array<float, 256> MakeByteTable(bool isSrgb)
{
    std::array<float, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const float value = static_cast<float>(i) / brightest;
        table[i] = isSrgb ? ToLinear(value) : value;
    }
    return table;
}

/// Reads and writes texels of one image format as values that can be averaged.
class TexelCodec
{
public:
    TexelCodec(TexelFormat format, bool isSrgb)
        : _format(format), _isSrgb(isSrgb), _colours(MakeByteTable(isSrgb)),
          _alphas(MakeByteTable(false))
    {}

    glm::vec4 Read(const TextureImage& image, std::uint32_t x, std::uint32_t y) const
    {
        const std::size_t texel = std::size_t(y) * image.Width + x;
        if (_format == TexelFormat::Float) {
            glm::vec4 value;
            std::memcpy(&value, image.Bytes.data() + texel * sizeof(value), sizeof(value));
            return value;
        }
        const std::byte* bytes = image.Bytes.data() + texel * channels;
        const auto at = [&](std::size_t i) { return std::to_integer<std::size_t>(bytes[i]); };
        return {_colours[at(0)], _colours[at(1)], _colours[at(2)], _alphas[at(3)]};
    }

    void Append(const glm::vec4& value, TextureImage& image) const
    {
        if (_format == TexelFormat::Float) {
            const auto* bytes = reinterpret_cast<const std::byte*>(&value);
            image.Bytes.insert(image.Bytes.end(), bytes, bytes + sizeof(value));
            return;
        }
        for (glm::length_t i = 0; i < value.length(); ++i) {
            const float stored = _isSrgb && i < 3 ? ToSrgb(value[i]) : value[i];
            image.Bytes.push_back(static_cast<std::byte>(std::lround(stored * brightest)));
        }
    }

private:
    TexelFormat _format;
    bool _isSrgb;
    std::array<float, 256> _colours;
    std::array<float, 256> _alphas;
};

TextureImage Halve(const TextureImage& image, const TexelCodec& codec)
{
    TextureImage half{
        std::max(1u, image.Width / 2), std::max(1u, image.Height / 2), image.Format, {}};
    for (std::uint32_t y = 0; y < half.Height; ++y) {
        for (std::uint32_t x = 0; x < half.Width; ++x) {
            glm::vec4 sum(0.0f);
            float count = 0.0f;
            // With odd sizes, some texels cover three.
            for (std::uint32_t j = y * image.Height / half.Height;
                 j < (y + 1) * image.Height / half.Height; ++j) {
                for (std::uint32_t i = x * image.Width / half.Width;
                     i < (x + 1) * image.Width / half.Width; ++i) {
                    sum += codec.Read(image, i, j);
                    count += 1.0f;
                }
            }
            codec.Append(sum / count, half);
        }
    }
    return half;
}

} // namespace

TextureImage MakeCheckerImage()
{
    constexpr std::uint32_t size = 256;
    constexpr std::uint32_t checkSize = 32;
    constexpr std::uint8_t light = 200;
    constexpr std::uint8_t dark = 120;
    std::vector<std::uint8_t> pixels;
    for (std::uint32_t y = 0; y < size; ++y) {
        for (std::uint32_t x = 0; x < size; ++x) {
            const std::uint8_t grey = (x / checkSize + y / checkSize) % 2 == 0 ? light : dark;
            pixels.insert(pixels.end(), {grey, grey, grey, 255});
        }
    }
    return MakeImage(size, size, TexelFormat::Unorm8, pixels.data());
}

TextureImage MakeFlatNormalImage()
{
    // Bytes cannot represent 0.5 exactly.
    constexpr float flat[] = {0.5f, 0.5f, 1.0f, 0.5f};
    return MakeImage(1, 1, TexelFormat::Float, flat);
}

TextureImage ToLinearFloats(const TextureImage& image, bool isSrgb)
{
    const TexelCodec source(image.Format, isSrgb);
    const TexelCodec target(TexelFormat::Float, false);
    TextureImage floats{image.Width, image.Height, TexelFormat::Float, {}};
    for (std::uint32_t y = 0; y < image.Height; ++y) {
        for (std::uint32_t x = 0; x < image.Width; ++x)
            target.Append(source.Read(image, x, y), floats);
    }
    return floats;
}

std::vector<TextureImage> MakeMipLevels(TextureImage image, bool isSrgb)
{
    const TexelCodec codec(image.Format, isSrgb);
    std::vector<TextureImage> levels;
    levels.push_back(std::move(image));
    while (levels.back().Width > 1 || levels.back().Height > 1)
        levels.push_back(Halve(levels.back(), codec));
    return levels;
}

} // namespace Mox::Host
