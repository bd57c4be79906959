#include "mox/preview/TextureLevels.h"

#include <gtest/gtest.h>

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
TEST(TextureLevels, SmallerLevelsKeepTheLight)
{
    const std::vector<TextureImage> raw = MakeMipLevels(MakeImage(2, 1, {0, 255}), false);
    ASSERT_EQ(raw.size(), 2u);
    EXPECT_EQ(RedOf(raw[1]), 128);
    const std::vector<TextureImage> srgb = MakeMipLevels(MakeImage(2, 1, {0, 255}), true);
    EXPECT_EQ(RedOf(srgb[1]), 188);
    EXPECT_EQ(std::to_integer<int>(srgb[1].Bytes[3]), 128) << "alpha is no light";
}

TEST(TextureLevels, OddSizesLeaveNoTexelOut)
{
    const std::vector<TextureImage> levels =
        MakeMipLevels(MakeImage(5, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 234}), false);
    ASSERT_EQ(levels.size(), 3u);
    EXPECT_EQ(levels[1].Width, 2u);
    EXPECT_EQ(levels[1].Height, 1u);
    EXPECT_EQ(RedOf(levels[1]), 0);
    EXPECT_EQ(RedOf(levels[2]), 13) << "a ninth of 234 in one of two texels";
}

} // namespace
