#include "tests/preview/PictureComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

using Mox::Host::Picture;

namespace {

constexpr std::size_t channelCount = 3;
constexpr std::size_t pixelSize = 4;

struct ByteRange
{
    int Least;
    int Most;
};

/// The ranges of each channel in a pixel and its neighbours; nothing if one of them is not drawn.
/// @param pixel offset of the pixel's first byte
/// @param row number of bytes in a row
std::optional<std::array<ByteRange, channelCount>>
RangesAround(const std::vector<std::uint8_t>& bytes, std::size_t pixel, std::size_t row)
{
    std::array<ByteRange, channelCount> ranges;
    ranges.fill({255, 0});
    for (std::size_t i = 0; i < 9; ++i) {
        const std::size_t at = pixel + i % 3 * pixelSize + i / 3 * row - pixelSize - row;
        if (bytes[at + channelCount] == 0)
            return std::nullopt;
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            ByteRange& range = ranges[channel];
            range.Least = std::min<int>(range.Least, bytes[at + channel]);
            range.Most = std::max<int>(range.Most, bytes[at + channel]);
        }
    }
    return ranges;
}

} // namespace

void ExpectSamePicture(const std::vector<std::uint8_t>& browser, const Picture& preview,
                       const PictureLimits& limits)
{
    const std::size_t row = pixelSize * preview.Width;
    ASSERT_EQ(browser.size(), preview.Pixels.size());
    std::size_t compared = 0;
    std::size_t outside = 0;
    double sum = 0.0;
    int worst = 0;
    for (std::size_t y = 1; y + 1 < preview.Height; ++y) {
        for (std::size_t x = 1; x + 1 < preview.Width; ++x) {
            const std::size_t there = (preview.Height - 1 - y) * row + x * pixelSize;
            const auto ranges = RangesAround(browser, there, row);
            if (!ranges)
                continue;
            for (std::size_t channel = 0; channel < channelCount; ++channel) {
                const int value = preview.Pixels[y * row + x * pixelSize + channel];
                const auto [least, most] = (*ranges)[channel];
                const int distance = std::max(least - value, value - most);
                ++compared;
                outside += distance > limits.Range ? 1 : 0;
                sum += std::abs(value - browser[there + channel]);
                worst = std::max(worst, distance);
            }
        }
    }
    const double mean = sum / static_cast<double>(std::max<std::size_t>(compared, 1));
    EXPECT_GT(compared, channelCount * preview.Width * preview.Height / 4);
    EXPECT_LE(static_cast<double>(outside), limits.Outside * static_cast<double>(compared))
        << "of " << compared << " values; the worst is " << worst << " beyond; mean " << mean;
    EXPECT_LE(mean, limits.Mean);
}
