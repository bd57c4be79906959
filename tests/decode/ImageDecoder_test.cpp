#include "SampleImages.h"
#include "mox/decode/DecodedFile.h"
#include "tests/support/Failure.h"
#include "tools/decode/ImageDecoder.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <map>

using namespace Mox::Host;

namespace {

constexpr std::uint32_t width = 9; // wide enough for packed rows
constexpr std::uint32_t height = 2;

FileBytes BytesOf(const std::string& file)
{
    return std::as_bytes(std::span(file));
}

/// The colour of the sample image at a texel: red at the left, increasingly green to the right,
/// with a black row at the bottom.
std::array<float, 4> ColourAt(std::uint32_t x, std::uint32_t y)
{
    return {y == 0 ? 1.0f : 0.0f, y == 0 ? static_cast<float>(x) / 8 : 0.0f, 0.0f, 1.0f};
}

template <class Component>
std::vector<Component> MakeComponents(float brightest)
{
    std::vector<Component> components;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            for (const float value : ColourAt(x, y))
                components.push_back(static_cast<Component>(std::lround(value * brightest)));
        }
    }
    return components;
}

std::vector<float> MakeFloats()
{
    std::vector<float> floats;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            for (const float value : ColourAt(x, y))
                floats.push_back(value);
        }
    }
    return floats;
}

/// A mantissa of 128 with an exponent of 129 represents 1.
std::string MakeHdr(bool isPacked)
{
    std::string file = MakeHdrHeader(width, height);
    for (std::uint32_t y = 0; y < height; ++y) {
        std::string channels[4];
        for (std::uint32_t x = 0; x < width; ++x) {
            const auto colour = ColourAt(x, y);
            for (std::size_t i = 0; i < 3; ++i)
                channels[i] += static_cast<char>(std::lround(colour[i] * 128));
            channels[3] += static_cast<char>(129);
        }
        if (isPacked) {
            file += std::string("\x02\x02\x00", 3) + static_cast<char>(width);
            file += {static_cast<char>(128 + width), channels[0][0]}; // as a run
            file += static_cast<char>(width) + channels[1];           // uncompressed
            file += {static_cast<char>(128 + 4), channels[2][0], 5};  // both
            file += channels[2].substr(4);
            file += {static_cast<char>(128 + width), channels[3][0]};
            continue;
        }
        for (std::uint32_t x = 0; x < width; ++x)
            file += {channels[0][x], channels[1][x], channels[2][x], channels[3][x]};
    }
    return file;
}

/// One file of each format, all with the same image.
std::map<std::string, std::string> MakeSamples()
{
    const auto bytes = MakeComponents<std::uint8_t>(255.0f);
    return {{"png", MakePng(width, height, bytes)},
            {"png with 16 bits", MakePng16(width, height, MakeComponents<std::uint16_t>(65535.0f))},
            {"jpeg", MakeJpeg(width, height, bytes)},
            {"exr", MakeExr(width, height, MakeFloats())},
            {"hdr", MakeHdr(false)},
            {"packed hdr", MakeHdr(true)}};
}

float ComponentAt(const TextureImage& image, std::size_t index)
{
    if (image.Format == TexelFormat::Unorm8)
        return static_cast<float>(std::to_integer<int>(image.Bytes.at(index))) / 255.0f;
    float value = 0.0f;
    std::memcpy(&value, image.Bytes.data() + index * sizeof(value), sizeof(value));
    return value;
}

std::string DecodeFailure(const std::string& file, const DecodeLimits& limits = {})
{
    return FailureOf<DecodeError>([&] { DecodeImage(BytesOf(file), limits); });
}

TEST(ImageDecoder, EveryFormatHasTheSameImage)
{
    const std::vector<float> expected = MakeFloats();
    for (const auto& [name, file] : MakeSamples()) {
        SCOPED_TRACE(name);
        const TextureImage image = DecodeImage(BytesOf(file), {});
        ASSERT_EQ(image.Width, width);
        ASSERT_EQ(image.Height, height);
        const bool isUnorm = name == "png" || name == "jpeg";
        ASSERT_EQ(image.Format, isUnorm ? TexelFormat::Unorm8 : TexelFormat::Float);
        ASSERT_EQ(image.Bytes.size(), std::size_t(width) * height * SizeOfTexel(image.Format));
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_NEAR(ComponentAt(image, i), expected[i], name == "jpeg" ? 0.05f : 0.003f) << i;
    }
}

TEST(ImageDecoder, ShowsTheDisplayWindowOfExr)
{
    // The stored window is offset by one to the right and one down.
    const TextureImage image = DecodeImage(BytesOf(MakeExr(width, height, MakeFloats(), 1, 1)), {});
    ASSERT_EQ(image.Width, width);
    ASSERT_EQ(image.Height, height);
    EXPECT_EQ(ComponentAt(image, 3), 0.0f) << "nothing is stored at the upper left";
    EXPECT_EQ(ComponentAt(image, std::size_t(width + 1) * 4), 1.0f);
    EXPECT_EQ(ComponentAt(image, std::size_t(width + 8) * 4 + 1), 7.0f / 8)
        << "the next to last of a row";
}

TEST(ImageDecoder, RefusesFilesThatAreCutShort)
{
    for (const auto& [name, file] : MakeSamples()) {
        for (std::size_t size = 0; size < file.size(); ++size) {
            EXPECT_THROW(DecodeImage(BytesOf(file).first(size), {}), DecodeError)
                << size << " bytes of " << name;
        }
    }
}

TEST(ImageDecoder, LooksAtTheHeaderFirst)
{
    const DecodeLimits small = {.Side = 8};
    const std::string row(std::size_t(4) * width, '\0');
    const std::tuple<std::string, std::string, DecodeLimits> cases[] = {
        {MakePngHeader(100000, 100000), "larger than the limit of 16384 on a side", {}},
        {MakePngHeader(16384, 16384),
         "16384 by 16384 texels takes more memory than the limit of 512 MB",
         {}},
        {MakeJpegHeader(65000, 65000), "larger than the limit of 16384 on a side", {}},
        {MakeJpegHeader(16384, 16384), "takes more memory", {}},
        {MakeHdrHeader(0, 5), "0 by 5 texels is empty", {}},
        {MakeHdrHeader(16384, 16384), "takes more memory", {}},
        {MakeHdrHeader(-1, 5), "its size does not have the form", {}},
        {MakeHdrHeader(2147483647, 2147483647), "larger than the limit", {}},
        {MakeExr(width, height, MakeFloats()), "larger than the limit of 8 on a side", small},
        {MakePng(width, height, MakeComponents<std::uint8_t>(255.0f)), "9 by 2 texels is larger",
         small},
        {"", "it is not a PNG, JPEG, OpenEXR or HDR image", {}},
        {"no image", "it is not a PNG, JPEG, OpenEXR or HDR image", {}},
        {MakeHdrHeader(9, 1) + std::string("\x02\x02\x00\x09\x8a\x01", 6),
         "the compressed data of a row is invalid",
         {}},
        {MakeHdrHeader(9, 1) + std::string("\x02\x02\x00\x09\x00\x01", 6),
         "the compressed data of a row is invalid",
         {}},
        {"#?RADIANCE\nFORMAT=32-bit_rle_xyze\n\n-Y 1 +X 1\nabcd", "its format is not", {}},
    };
    for (const auto& [file, message, limits] : cases) {
        const std::string failure = DecodeFailure(file, limits);
        EXPECT_NE(failure.find(message), failure.npos) << failure << "\nand not: " << message;
    }
    // A file that exceeds a limit can be read with a higher one.
    EXPECT_EQ(DecodeFailure(MakeSamples().at("exr"), {.Side = 9}), "no failure");
}

} // namespace
