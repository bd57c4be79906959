#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/shader/ShaderType.h"

#include <optional>

namespace Mox::Host {

/// The dimensions of a texture.
enum class TextureShape
{
    Row, ///< one-dimensional: the top row of an image
    Plane,
    Cube,   ///< six layers, in the order +x, -x, +y, -y, +z, -z
    Volume, ///< each layer is a slice, in the order of the third coordinate
};

constexpr std::uint32_t cubeFaces = 6;

/// Returns the shape that a sampler reads, or nothing if previews do not support it.
std::optional<TextureShape> ShapeOf(ComponentType sampler);

/// Converts an image to the layers of a shape. A cube map is stored as a row of six square faces,
/// or as a panorama twice as wide as high, with the same layout as that of a light. A volume is
/// stored as a row of square slices.
/// @param isSrgb whether colours are sRGB, in which case a panorama is filtered in linear light
/// @throws HostError without a location if the image has other proportions
TextureImage ToShape(TextureImage image, TextureShape shape, bool isSrgb);

} // namespace Mox::Host
