#include "mox/Text.h"
#include "mox/decode/DecodedFile.h"
#include "mox/host/File.h"
#include "tests/support/Failure.h"
#include "tools/decode/ImageDecoder.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace Mox::Host;

namespace {

constexpr std::uint32_t width = 9; // wide enough for packed rows
constexpr std::uint32_t height = 2;

FileBytes BytesOf(const std::string& file)
{
    return std::as_bytes(std::span(file));
}

/// One file of each format, all with the same image.
constexpr const char* samples[] = {"8_bits.png", "16_bits.png", "sample.jpeg",
                                   "sample.exr", "sample.hdr",  "packed.hdr"};

std::string Sample(const std::string& name)
{
    return ReadFile(std::filesystem::path(MOX_TEST_DATA "/decode/samples") / name);
}

/// The sample image is red at the left and increasingly green to the right, with a black row at the
/// bottom.
float ColourAt(std::size_t texel, std::size_t channel)
{
    const float colour[] = {1.0f, static_cast<float>(texel) / 8, 0.0f, 1.0f};
    return channel == 3 || texel < width ? colour[channel] : 0.0f;
}

std::string HdrHeader(int columns, int rows)
{
    return Mox::Materials::Compose("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y ", rows, " +X ",
                                   columns, "\n");
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
    for (const std::string name : samples) {
        SCOPED_TRACE(name);
        const std::string file = Sample(name);
        const TextureImage image = DecodeImage(BytesOf(file), {});
        ASSERT_EQ(image.Width, width);
        ASSERT_EQ(image.Height, height);
        const bool isJpeg = name == "sample.jpeg";
        const bool isUnorm = isJpeg || name == "8_bits.png";
        ASSERT_EQ(image.Format, isUnorm ? TexelFormat::Unorm8 : TexelFormat::Float);
        ASSERT_EQ(image.Bytes.size(), std::size_t(width) * height * SizeOfTexel(image.Format));
        for (std::size_t i = 0; i < std::size_t(4) * width * height; ++i)
            EXPECT_NEAR(ComponentAt(image, i), ColourAt(i / 4, i % 4), isJpeg ? 0.05f : 0.003f)
                << i;
    }
}

TEST(ImageDecoder, ShowsTheDisplayWindowOfExr)
{
    // The stored window is offset by one to the right and one down.
    const std::string file = Sample("offset.exr");
    const TextureImage image = DecodeImage(BytesOf(file), {});
    ASSERT_EQ(image.Width, width);
    ASSERT_EQ(image.Height, height);
    EXPECT_EQ(ComponentAt(image, 3), 0.0f) << "nothing is stored at the upper left";
    EXPECT_EQ(ComponentAt(image, std::size_t(width + 1) * 4), 1.0f);
    EXPECT_EQ(ComponentAt(image, std::size_t(width + 8) * 4 + 1), 7.0f / 8)
        << "the next to last of a row";
}

TEST(ImageDecoder, RefusesFilesThatAreCutShort)
{
    for (const char* name : samples) {
        const std::string file = Sample(name);
        for (std::size_t size = 0; size < file.size(); ++size) {
            EXPECT_THROW(DecodeImage(BytesOf(file).first(size), {}), DecodeError)
                << size << " bytes of " << name;
        }
    }
}

TEST(ImageDecoder, LooksAtTheHeaderFirst)
{
    const DecodeLimits small = {.Side = 8};
    const std::tuple<std::string, std::string, DecodeLimits> cases[] = {
        {Sample("side_100000.png"), "larger than the limit of 16384 on a side", {}},
        {Sample("side_16384.png"),
         "16384 by 16384 texels takes more memory than the limit of 512 MB",
         {}},
        {Sample("side_65000.jpeg"), "larger than the limit of 16384 on a side", {}},
        {Sample("side_16384.jpeg"), "takes more memory", {}},
        {HdrHeader(0, 5), "0 by 5 texels is empty", {}},
        {HdrHeader(16384, 16384), "takes more memory", {}},
        {HdrHeader(-1, 5), "its size does not have the form", {}},
        {HdrHeader(2147483647, 2147483647), "larger than the limit", {}},
        {Sample("sample.exr"), "larger than the limit of 8 on a side", small},
        {Sample("8_bits.png"), "9 by 2 texels is larger", small},
        {"", "it is not a PNG, JPEG, OpenEXR or HDR image", {}},
        {"no image", "it is not a PNG, JPEG, OpenEXR or HDR image", {}},
        {HdrHeader(9, 1) + std::string("\x02\x02\x00\x09\x8a\x01", 6),
         "the compressed data of a row is invalid",
         {}},
        {HdrHeader(9, 1) + std::string("\x02\x02\x00\x09\x00\x01", 6),
         "the compressed data of a row is invalid",
         {}},
        {"#?RADIANCE\nFORMAT=32-bit_rle_xyze\n\n-Y 1 +X 1\nabcd", "its format is not", {}},
    };
    for (const auto& [file, message, limits] : cases) {
        const std::string failure = DecodeFailure(file, limits);
        EXPECT_NE(failure.find(message), failure.npos) << failure << "\nand not: " << message;
    }
    // A file that exceeds a limit can be read with a higher one.
    EXPECT_EQ(DecodeFailure(Sample("sample.exr"), {.Side = 9}), "no failure");
}

} // namespace
