#pragma once

#include "mox/host/Picture.h"

#include <cstdint>
#include <vector>

/// The permitted differences between two pictures, of 255.
struct PictureLimits
{
    int Range;               ///< beyond the range of a pixel and its neighbours
    double Mean;             ///< of all differences
    double Outside = 0.0002; ///< share of the values that may be outside the range
};

/// Compares a preview with the same picture from a browser. The values of the preview must lie in
/// the range of that pixel and its eight neighbours in the browser's picture: the preview takes
/// several samples per pixel, and triangles meet within pixels, but neither leads further away. A
/// few values may lie outside, because two devices can choose different mip levels. Pixels with a
/// neighbour that the browser has not drawn are not compared.
/// @param browser bytes in sRGB from the lowest row on, with an alpha of 0 where nothing is drawn
void ExpectSamePicture(const std::vector<std::uint8_t>& browser, const Mox::Host::Picture& preview,
                       const PictureLimits& limits);
