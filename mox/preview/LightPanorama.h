#pragma once

#include "mox/decode/TextureImage.h"

#include <vector>

namespace Mox::Host {

/// Light from all directions, prepared for the environment's physical surfaces. Rows run from
/// straight up to straight down, and columns once around, with the direction -z in the middle and x
/// to its right.
struct LightPanorama
{
    /// Each half as large as the one before. The last one is the light that a matt surface
    /// receives, and the others what mirrors reflect, from a perfect one to the roughest.
    std::vector<TextureImage> Levels;

    /// Index of the level of the roughest mirror. A mirror of roughness r reads the level
    /// r*( 2 - r )*RoughestLevel.
    float RoughestLevel = 0.0f;
};

/// Blurs a panorama for every roughness. The result has 512 by 256 texels, whatever the image has.
/// @param isSrgb whether its colours are sRGB and not linear light
LightPanorama PrepareLight(const TextureImage& image, bool isSrgb);

/// A photographer's studio without colours: two soft boxes, a strip light and a bright ceiling over
/// a grey floor. Linear light.
TextureImage MakeStudioImage();

} // namespace Mox::Host
