#include "mox/host/HostError.h"
#include "mox/preview/TextureImage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace Mox::Host;

namespace {

TextureImage MakeImage(std::uint32_t width, std::uint32_t height, const std::vector<int>& greys)
{
    TextureImage image{width, height, TexelFormat::Unorm8, {}};
    for (const int grey : greys) {
        const auto byte = static_cast<std::byte>(grey);
        image.Bytes.insert(image.Bytes.end(), {byte, byte, byte, byte});
    }
    return image;
}

int RedOf(const TextureImage& image)
{
    return std::to_integer<int>(image.Bytes[0]);
}

/// Half black and half white is half the light, which sRGB stores as 188.
TEST(TextureImage, SmallerLevelsKeepTheLight)
{
    const std::vector<TextureImage> raw = MakeMipLevels(MakeImage(2, 1, {0, 255}), false);
    ASSERT_EQ(raw.size(), 2u);
    EXPECT_EQ(RedOf(raw[1]), 128);
    const std::vector<TextureImage> srgb = MakeMipLevels(MakeImage(2, 1, {0, 255}), true);
    EXPECT_EQ(RedOf(srgb[1]), 188);
    EXPECT_EQ(std::to_integer<int>(srgb[1].Bytes[3]), 128) << "alpha is no light";
}

TEST(TextureImage, OddSizesLeaveNoTexelOut)
{
    const std::vector<TextureImage> levels =
        MakeMipLevels(MakeImage(5, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 234}), false);
    ASSERT_EQ(levels.size(), 3u);
    EXPECT_EQ(levels[1].Width, 2u);
    EXPECT_EQ(levels[1].Height, 1u);
    EXPECT_EQ(RedOf(levels[1]), 0);
    EXPECT_EQ(RedOf(levels[2]), 13) << "a ninth of 234 in one of two texels";
}

TEST(TextureImage, HdrFilesKeepTheirRange)
{
    const TemporaryFolder folder;
    // One texel, 4 by 2 by 1: mantissas times two to the power of the exponent less 136.
    const std::string texel = {char(128), char(64), char(32), char(131)};
    const TextureImage image = ReadTextureImage(
        folder.Write("sun.hdr", "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 1 +X 1\n" + texel));
    ASSERT_EQ(image.Format, TexelFormat::Float);
    float values[4];
    ASSERT_EQ(image.Bytes.size(), sizeof(values));
    std::memcpy(values, image.Bytes.data(), sizeof(values));
    EXPECT_FLOAT_EQ(values[0], 4.0f);
    EXPECT_FLOAT_EQ(values[1], 2.0f);
    EXPECT_FLOAT_EQ(values[2], 1.0f);
    EXPECT_FLOAT_EQ(values[3], 1.0f);
}

TEST(TextureImage, SaysWhyItIsNone)
{
    const TemporaryFolder folder;
    EXPECT_THROW(ReadTextureImage(folder.Path() / "gone.png"), HostError);
    for (const char* bytes : {"", "no image", "\x89PNG\r\n\x1a\n"})
        EXPECT_THROW(ReadTextureImage(folder.Write("a.png", bytes)), HostError) << bytes;
}

} // namespace
