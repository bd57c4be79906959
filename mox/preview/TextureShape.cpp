#include "mox/preview/TextureShape.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/preview/PanoramaReader.h"
#include "mox/preview/TexelCodec.h"

#include <algorithm>
#include <cstddef>
#include <glm/geometric.hpp>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Separates layers that are side by side.
TextureImage CutRow(const TextureImage& image)
{
    TextureImage cut{image.Height, image.Height, image.Format, {}, image.Width / image.Height};
    cut.Bytes.reserve(image.Bytes.size());
    const std::size_t rowSize = cut.Width * SizeOfTexel(image.Format);
    for (std::uint32_t layer = 0; layer < cut.Layers; ++layer) {
        for (std::uint32_t y = 0; y < image.Height; ++y) {
            const auto row =
                image.Bytes.begin() +
                static_cast<std::ptrdiff_t>((std::size_t(y) * cut.Layers + layer) * rowSize);
            cut.Bytes.insert(cut.Bytes.end(), row, row + static_cast<std::ptrdiff_t>(rowSize));
        }
    }
    return cut;
}

/// Returns the direction of a point on a face of a cube map.
/// @param right, down from -1 to 1 over the face
glm::vec3 FaceDirection(std::uint32_t face, float right, float down)
{
    switch (face) {
    case 0:
        return {1.0f, -down, -right};
    case 1:
        return {-1.0f, -down, right};
    case 2:
        return {right, 1.0f, down};
    case 3:
        return {right, -1.0f, -down};
    case 4:
        return {right, -down, 1.0f};
    default:
        return {-right, -down, -1.0f};
    }
}

TextureImage MakeCube(const TextureImage& panorama, bool isSrgb)
{
    const TexelCodec codec(panorama.Format, isSrgb);
    const std::uint32_t side = std::max(1u, panorama.Height / 2);
    TextureImage cube{side, side, panorama.Format, {}, cubeFaces};
    const auto at = [&](std::uint32_t x, std::uint32_t y) { return codec.Read(panorama, x, y); };
    const auto placeOf = [&](std::uint32_t texel) {
        return (2.0f * static_cast<float>(texel) + 1.0f) / static_cast<float>(side) - 1.0f;
    };
    for (std::uint32_t face = 0; face < cubeFaces; ++face) {
        for (std::uint32_t y = 0; y < side; ++y) {
            for (std::uint32_t x = 0; x < side; ++x) {
                const glm::vec3 direction =
                    glm::normalize(FaceDirection(face, placeOf(x), placeOf(y)));
                codec.Append(ReadPanorama(panorama.Width, panorama.Height, direction, at), cube);
            }
        }
    }
    return cube;
}

} // namespace

std::optional<TextureShape> ShapeOf(ComponentType sampler)
{
    switch (sampler) {
    case ComponentType::Sampler1D:
        return TextureShape::Row;
    case ComponentType::Sampler2D:
        return TextureShape::Plane;
    case ComponentType::SamplerCube:
        return TextureShape::Cube;
    case ComponentType::Sampler3D:
        return TextureShape::Volume;
    default:
        return std::nullopt;
    }
}

TextureImage ToShape(TextureImage image, TextureShape shape, bool isSrgb)
{
    const std::uint64_t height = image.Height;
    switch (shape) {
    case TextureShape::Row:
    case TextureShape::Plane:
        return image;
    case TextureShape::Cube:
        if (image.Width == 2 * height)
            return MakeCube(image, isSrgb);
        if (image.Width == cubeFaces * height)
            return CutRow(image);
        throw HostError({}, Compose("an image of ", image.Width, " by ", image.Height,
                                    " texels is not a cube map: expected a panorama twice as wide "
                                    "as high, or a row of six square faces"));
    case TextureShape::Volume:
        if (image.Width % height == 0)
            return CutRow(image);
        throw HostError({}, Compose("an image of ", image.Width, " by ", image.Height,
                                    " texels is not a volume: expected a row of square slices"));
    }
    return image;
}

} // namespace Mox::Host
