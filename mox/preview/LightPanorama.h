#pragma once

#include "mox/decode/DecodedFile.h"

#include <vector>

namespace Mox::Host {

/// Light from all directions, prefiltered for the environment's physical surfaces. Rows run from
/// straight up to straight down; columns run once around, with direction -z in the middle and x to
/// its right.
struct LightPanorama
{
    /// Each level has half the size of the one before. The last level is the diffuse irradiance,
    /// and the others are reflections, from perfectly smooth to the roughest.
    std::vector<TextureImage> Levels;

    /// Index of the level for the highest roughness. Roughness r reads the level r*( 2 - r
    /// )*RoughestLevel.
    float RoughestLevel = 0.0f;
};

/// Prefilters a panorama for every roughness. The result has 512 by 256 texels, whatever the size
/// of the image.
/// @param isSrgb whether the colours of the image are sRGB rather than linear
LightPanorama PrepareLight(const TextureImage& image, bool isSrgb);

/// Returns an uncoloured photo studio: two soft boxes, a strip light and a bright ceiling over a
/// grey floor. Linear light.
TextureImage MakeStudioImage();

} // namespace Mox::Host
