#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

using Texel = std::array<double, 4>;

constexpr std::uint32_t imageWidth = 16;

/// Texels with values that a device stores without rounding: bytes, or floats that fit into halfs.
std::vector<Texel> MakeTexels(std::uint32_t height, TexelFormat format)
{
    std::vector<Texel> texels;
    std::mt19937 random(61);
    for (std::uint32_t i = 0; i < imageWidth * height; ++i) {
        Texel texel;
        for (double& value : texel) {
            value = format == TexelFormat::Unorm8
                        ? static_cast<double>(random() % 256) / 255.0
                        : static_cast<double>(random() % 1024) / 256.0 - 1.0;
        }
        texels.push_back(texel);
    }
    // Includes the ends of the range and the point where the segments of the sRGB curve meet.
    texels[0] = {0.0, 0.0, 0.0, 0.0};
    texels[1] = {1.0, 1.0, 1.0, 1.0};
    if (format == TexelFormat::Unorm8)
        texels[2] = {10.0 / 255.0, 11.0 / 255.0, 128.0 / 255.0, 127.0 / 255.0};
    return texels;
}

TextureImage ToTexture(const std::vector<Texel>& texels, TexelFormat format)
{
    const auto height = static_cast<std::uint32_t>(texels.size()) / imageWidth;
    TextureImage texture{imageWidth, height, format, {}};
    for (const Texel& texel : texels) {
        for (const double value : texel) {
            if (format == TexelFormat::Unorm8) {
                texture.Bytes.push_back(static_cast<std::byte>(std::lround(value * 255.0)));
            } else {
                std::array<std::byte, sizeof(float)> bytes;
                const auto narrow = static_cast<float>(value);
                std::memcpy(bytes.data(), &narrow, sizeof(narrow));
                texture.Bytes.insert(texture.Bytes.end(), bytes.begin(), bytes.end());
            }
        }
    }
    return texture;
}

double SrgbToLinear(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// The maximum slope of the curve up to a value.
double SrgbSlope(double value)
{
    return std::max(1.0, 2.4 / 1.055 * std::pow((std::abs(value) + 0.055) / 1.055, 1.4));
}

struct ColourType
{
    const char* Settings;
    const char* Ports; ///< separated by spaces
    std::size_t Count; ///< total number of components of the ports
    bool IsNormal = false;
    bool IsPacked = false; ///< a normal stored in the alpha and green channels of the texture
};

constexpr ColourType colourTypes[] = {
    {"Colour", "out_colour", 3},
    {"Colour; Alpha=true", "out_colour", 3},
    {"Colour; Alpha=true", "out_colour out_alpha", 4},
    {"Normal", "out_colour", 3, true},
    {"Normal; Alpha=true", "out_colour out_alpha", 4, true},
    {"Component", "out_red out_green out_blue", 3},
    {"Component; Alpha=true", "out_red out_green out_blue out_alpha", 4},
    {"Vector", "out_colour", 4},
    {"DXT5 Normal", "out_colour", 3, true, true},
};

/// How a texture is read.
struct Reading
{
    bool Is1D;
    bool IsSrgb;
    TexelFormat Format;
    const char* Precision;
};

class TextureNumbers : public NumbersTest
{
protected:
    static std::string WriteMaterial(const ColourType& type, const Reading& reading)
    {
        return Compose("place Feed:", reading.Is1D ? 1 : 2,
                       "\nnode CoreTexture; Name=image; Texture Type=", reading.Is1D ? "1D" : "2D",
                       "; Colour Type=", type.Settings,
                       "; sRGB=", reading.IsSrgb ? "true" : "false", "\nplace.read -> node.in_uv\n",
                       WriteSink(reading.Precision, type.Ports));
    }

    /// Computes the exact result for a texel.
    static Result Decode(const ColourType& type, const Reading& reading, const Texel& texel,
                         std::size_t at)
    {
        const double range = reading.Format == TexelFormat::Unorm8 ? 1.0 : 4.0;
        const double value = texel[at];
        if (type.IsPacked)
            return Unpack(texel[3], texel[1], at, range);
        if (type.IsNormal && at < 3)
            return Expected{2.0 * value - 1.0, 2.0 * range};
        if (at == 3 || !reading.IsSrgb)
            return Expected{value, range};
        return Expected{SrgbToLinear(value), SrgbSlope(value) * range};
    }

    /// The third component makes the length one. It is undefined outside the unit circle, and near
    /// the circle the slope of the root is too steep.
    static Result Unpack(double storedX, double storedY, std::size_t at, double range)
    {
        const double x = 2.0 * storedX - 1.0;
        const double y = 2.0 * storedY - 1.0;
        if (at < 2)
            return Expected{at == 0 ? x : y, 2.0 * range};
        const double square = 1.0 - x * x - y * y;
        if (square < 1e-3)
            return std::nullopt;
        const double z = std::sqrt(square);
        return Expected{z, 1.0 + 2.0 * range * (std::abs(x) + std::abs(y)) / z};
    }

    void CompareReading(const ColourType& type, const Reading& reading,
                        Comparison& comparison) const
    {
        const std::uint32_t height = reading.Is1D ? 1 : 8;
        const std::vector<Texel> texels = MakeTexels(height, reading.Format);
        RunInputs inputs;
        inputs.Textures["image"] = ToTexture(texels, reading.Format);
        for (std::uint32_t y = 0; y < height; ++y) {
            for (std::uint32_t x = 0; x < imageWidth; ++x)
                inputs.Streams["place"].push_back(
                    {(static_cast<float>(x) + 0.5f) / imageWidth,
                     (static_cast<float>(y) + 0.5f) / static_cast<float>(height)});
        }
        Compare(
            WriteMaterial(type, reading), inputs, type.Count,
            [&](std::size_t i, std::size_t at) { return Decode(type, reading, texels[i], at); },
            comparison);
    }
};

TEST_F(TextureNumbers, AtTheMiddleOfTexels)
{
    for (const ColourType& type : colourTypes) {
        Comparison comparison(Compose(type.Settings, " ", type.Count),
                              {32.0, "a power of the exponent 2.4 at most"});
        for (const bool is1D : {false, true}) {
            for (const bool isSrgb : {false, true}) {
                for (const char* precision : {"float", "half"}) {
                    for (const auto format : {TexelFormat::Unorm8, TexelFormat::Float})
                        CompareReading(type, {is1D, isSrgb, format, precision}, comparison);
                }
            }
        }
    }
}

} // namespace
