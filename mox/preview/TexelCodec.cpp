#include "mox/preview/TexelCodec.h"

#include <cmath>
#include <cstddef>
#include <cstring>

namespace Mox::Host {

namespace {

constexpr std::size_t channels = 4;
constexpr float brightest = 255.0f;

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

} // namespace

TexelCodec::TexelCodec(TexelFormat format, bool isSrgb)
    : _format(format), _isSrgb(isSrgb), _colours(MakeByteTable(isSrgb)),
      _alphas(MakeByteTable(false))
{}

glm::vec4 TexelCodec::Read(const TextureImage& image, std::uint32_t x, std::uint32_t y) const
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

void TexelCodec::Append(const glm::vec4& value, TextureImage& image) const
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

} // namespace Mox::Host
