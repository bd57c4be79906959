#include "mox/host/HostError.h"
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

std::vector<int> RedsOf(const TextureImage& image)
{
    std::vector<int> reds;
    for (std::size_t i = 0; i < image.Bytes.size(); i += 4)
        reds.push_back(std::to_integer<int>(image.Bytes[i]));
    return reds;
}

/// The mean of black and white is half the light, which sRGB encodes as 188.
TEST(TextureLevels, SmallerLevelsKeepTheLight)
{
    const std::vector<TextureImage> raw =
        MakeMipLevels(MakeImage(2, 1, {0, 255}), TextureShape::Plane, false);
    ASSERT_EQ(raw.size(), 2u);
    EXPECT_EQ(RedsOf(raw[1]).front(), 128);
    const std::vector<TextureImage> srgb =
        MakeMipLevels(MakeImage(2, 1, {0, 255}), TextureShape::Plane, true);
    EXPECT_EQ(RedsOf(srgb[1]).front(), 188);
    EXPECT_EQ(std::to_integer<int>(srgb[1].Bytes[3]), 128) << "alpha is no light";
}

TEST(TextureLevels, OddSizesLeaveNoTexelOut)
{
    const std::vector<TextureImage> levels =
        MakeMipLevels(MakeImage(5, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 234}),
                      TextureShape::Plane, false);
    ASSERT_EQ(levels.size(), 3u);
    EXPECT_EQ(levels[1].Width, 2u);
    EXPECT_EQ(levels[1].Height, 1u);
    EXPECT_EQ(RedsOf(levels[1]).front(), 0);
    EXPECT_EQ(RedsOf(levels[2]).front(), 13) << "a ninth of 234 in one of two texels";
}

TEST(TextureLevels, VolumesGetThinnerToo)
{
    const TextureImage volume = ToShape(MakeImage(8, 2,
                                                  {1, 2, 5, 6, 10, 20, 50, 60, //
                                                   3, 4, 7, 12, 30, 40, 70, 80}),
                                        TextureShape::Volume, false);
    EXPECT_EQ(volume.Layers, 4u);
    EXPECT_EQ(RedsOf(volume),
              (std::vector{1, 2, 3, 4, 5, 6, 7, 12, 10, 20, 30, 40, 50, 60, 70, 80}));
    const std::vector<TextureImage> levels = MakeMipLevels(volume, TextureShape::Volume, false);
    ASSERT_EQ(levels.size(), 3u);
    EXPECT_EQ(RedsOf(levels[1]), (std::vector{5, 45}));
    EXPECT_EQ(levels[2].Layers, 1u);
}

TEST(TextureLevels, CubesAreMadeOfFacesOrOfAPanorama)
{
    const TextureImage faces =
        ToShape(MakeImage(6, 1, {1, 2, 3, 4, 5, 6}), TextureShape::Cube, false);
    EXPECT_EQ(RedsOf(faces), (std::vector{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(MakeMipLevels(faces, TextureShape::Cube, false).size(), 1u);
    // The columns are in the directions z, -x, -z and x; directions between two columns have their
    // mean.
    const TextureImage cube =
        ToShape(MakeImage(4, 2, {20, 40, 60, 80, 20, 40, 60, 80}), TextureShape::Cube, false);
    EXPECT_EQ(cube.Layers, 6u);
    const std::vector<int> reds = RedsOf(cube);
    EXPECT_EQ(std::vector(reds.begin(), reds.begin() + 2), (std::vector{70, 30}));
    EXPECT_EQ(std::vector(reds.begin() + 4, reds.end()), (std::vector{50, 50}));
    EXPECT_THROW(ToShape(MakeImage(3, 1, {1, 2, 3}), TextureShape::Cube, false), HostError);
    EXPECT_THROW(ToShape(MakeImage(3, 2, {1, 2, 3, 4, 5, 6}), TextureShape::Volume, false),
                 HostError);
}

} // namespace
