#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/preview/TextureShape.h"

#include <vector>

namespace Mox::Host {

/// Returns checks of two greys, which replace a texture without a file.
TextureImage MakeCheckerImage(TextureShape shape);

/// Returns the replacement for a normal map: no bumps, in both encodings of normals.
TextureImage MakeFlatNormalImage(TextureShape shape);

/// Converts an image to floats.
/// @param isSrgb whether bytes are sRGB colours, which are converted to linear light
TextureImage ToLinearFloats(const TextureImage& image, bool isSrgb);

/// Returns the image and its mip levels down to one texel, each half as wide and high as the one
/// before; those of a volume are also half as deep. Each texel is the mean of those that it covers.
/// @param image must have the layers of the shape
/// @param isSrgb whether colours are sRGB, in which case they are averaged in linear light
std::vector<TextureImage> MakeMipLevels(TextureImage image, TextureShape shape, bool isSrgb);

} // namespace Mox::Host
