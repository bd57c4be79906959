#pragma once

#include "mox/decode/TextureImage.h"

#include <vector>

namespace Mox::Host {

/// Checks of two greys: stands in for an image that nobody names.
TextureImage MakeCheckerImage();

/// Stands in for a normal map: no bump anywhere, in both ways of storing normals.
TextureImage MakeFlatNormalImage();

/// The image as floats.
/// @param isSrgb whether bytes hold sRGB colours, which become linear light
TextureImage ToLinearFloats(const TextureImage& image, bool isSrgb);

/// The image and its smaller copies down to one texel, each half as wide and high as the one
/// before. Every texel is the mean of those that it covers.
/// @param isSrgb whether colours are sRGB, so that the mean must be that of the light
std::vector<TextureImage> MakeMipLevels(TextureImage image, bool isSrgb);

} // namespace Mox::Host
