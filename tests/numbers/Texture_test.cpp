#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

using Texel = std::array<double, 4>;

/// An image with its values as numbers.
struct Image
{
    std::uint32_t Width;
    std::uint32_t Height;
    std::vector<Texel> Texels;

    const Texel& At(std::int64_t x, std::int64_t y) const
    {
        const auto wrap = [](std::int64_t at, std::uint32_t size) {
            return static_cast<std::size_t>((at % size + size) % size);
        };
        return Texels[wrap(y, Height) * Width + wrap(x, Width)];
    }
};

/// An image with values that a device stores without rounding: bytes, or floats that fit into
/// halfs.
Image MakeImage(std::uint32_t width, std::uint32_t height, TexelFormat format)
{
    Image image{width, height, {}};
    std::mt19937 random(61);
    for (std::uint32_t i = 0; i < width * height; ++i) {
        Texel texel;
        for (double& value : texel) {
            value = format == TexelFormat::Unorm8
                        ? static_cast<double>(random() % 256) / 255.0
                        : static_cast<double>(random() % 1024) / 256.0 - 1.0;
        }
        image.Texels.push_back(texel);
    }
    // Includes the ends of the range and the point where the segments of the sRGB curve meet.
    image.Texels[0] = {0.0, 0.0, 0.0, 0.0};
    image.Texels[1] = {1.0, 1.0, 1.0, 1.0};
    if (format == TexelFormat::Unorm8)
        image.Texels[2] = {10.0 / 255.0, 11.0 / 255.0, 128.0 / 255.0, 127.0 / 255.0};
    return image;
}

TextureImage ToTexture(const Image& image, TexelFormat format)
{
    TextureImage texture{image.Width, image.Height, format, {}};
    for (const Texel& texel : image.Texels) {
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

/// Bilinear interpolation at a position in a repeating image.
Texel ReadLinear(const Image& image, double u, double v, bool is1D)
{
    const double x = u * image.Width - 0.5;
    const double y = is1D ? 0.0 : v * image.Height - 0.5;
    const auto left = static_cast<std::int64_t>(std::floor(x));
    const auto top = static_cast<std::int64_t>(std::floor(y));
    const double right = x - std::floor(x);
    const double below = y - std::floor(y);
    Texel mean{};
    for (std::size_t c = 0; c < 4; ++c) {
        mean[c] = (1.0 - below) * ((1.0 - right) * image.At(left, top)[c] +
                                   right * image.At(left + 1, top)[c]) +
                  below * ((1.0 - right) * image.At(left, top + 1)[c] +
                           right * image.At(left + 1, top + 1)[c]);
    }
    return mean;
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

constexpr Tolerance whole = {32.0, "a power of the exponent 2.4 at most"};
constexpr Tolerance mixed = {98304.0, "3/256 of the range of texels: devices know places to eight "
                                      "bits of a texel, and may mix bytes as bytes"};

/// The permitted error of a texel's values.
struct Slip
{
    double Range; ///< range of the values
    double Unit;  ///< permitted error as a fraction of it
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
    /// @param slip permitted error of the texel's values; scales are relative to its unit
    static Result Decode(const ColourType& type, const Reading& reading, const Texel& texel,
                         std::size_t at, const Slip& slip)
    {
        const double value = texel[at];
        if (type.IsPacked)
            return Unpack(texel[3], texel[1], at, slip);
        if (at == 3)
            return Expected{value, slip.Range};
        if (type.IsNormal)
            return Expected{2.0 * value - 1.0, 2.0 * slip.Range};
        if (!reading.IsSrgb)
            return Expected{value, slip.Range};
        return Expected{SrgbToLinear(value), SrgbSlope(value) * slip.Range};
    }

    /// The third component makes the length one. It is undefined outside the unit circle, and on
    /// the circle the slope of the root is unbounded.
    static Result Unpack(double storedX, double storedY, std::size_t at, const Slip& slip)
    {
        const double x = 2.0 * storedX - 1.0;
        const double y = 2.0 * storedY - 1.0;
        if (at < 2)
            return Expected{at == 0 ? x : y, 2.0 * slip.Range};
        const double offset = 2.0 * slip.Range * slip.Unit;
        const double square = 1.0 - x * x - y * y;
        const double squareOffset = 2.0 * offset * (std::abs(x) + std::abs(y) + offset);
        if (square <= squareOffset)
            return std::nullopt;
        const double z = std::sqrt(square);
        return Expected{z, (z - std::sqrt(square - squareOffset)) / slip.Unit};
    }

    /// Reads the image at the centre of each texel, or at arbitrary positions inside and around it.
    void CompareReading(const ColourType& type, const Reading& reading, bool isAnywhere,
                        Comparison& comparison) const
    {
        constexpr std::uint32_t width = 16;
        const std::uint32_t height = reading.Is1D ? 1 : 8;
        const Image image = MakeImage(width, height, reading.Format);
        RunInputs inputs;
        inputs.Textures["image"] = ToTexture(image, reading.Format);
        std::vector<Numbers>& places = inputs.Streams["place"];
        std::mt19937 random(62);
        const auto anywhere = [&] { return static_cast<float>(random()) / 858993459.0f - 2.0f; };
        for (std::uint32_t y = 0; y < height; ++y) {
            for (std::uint32_t x = 0; x < width; ++x) {
                if (isAnywhere)
                    places.push_back({anywhere(), anywhere()});
                else
                    places.push_back({(static_cast<float>(x) + 0.5f) / width,
                                      (static_cast<float>(y) + 0.5f) / static_cast<float>(height)});
            }
        }
        const Slip slip{reading.Format == TexelFormat::Unorm8 ? 1.0 : 4.0,
                        (isAnywhere ? mixed : whole).Steps * std::numeric_limits<float>::epsilon()};
        Compare(
            WriteMaterial(type, reading), inputs, type.Count,
            [&](std::size_t i, std::size_t at) {
                const Texel texel = ReadLinear(image, places[i][0], places[i][1], reading.Is1D);
                return Decode(type, reading, texel, at, slip);
            },
            comparison);
    }

    void CompareAll(bool isAnywhere) const
    {
        for (const ColourType& type : colourTypes) {
            Comparison comparison(Compose(type.Settings, " ", type.Count),
                                  isAnywhere ? mixed : whole);
            for (const bool is1D : {false, true}) {
                for (const bool isSrgb : {false, true}) {
                    for (const char* precision : {"float", "half"}) {
                        for (const auto format : {TexelFormat::Unorm8, TexelFormat::Float})
                            CompareReading(type, {is1D, isSrgb, format, precision}, isAnywhere,
                                           comparison);
                    }
                }
            }
        }
    }
};

TEST_F(TextureNumbers, AtTheMiddleOfTexels)
{
    CompareAll(false);
}

TEST_F(TextureNumbers, BetweenTexelsAndBeyondTheImage)
{
    CompareAll(true);
}

} // namespace
