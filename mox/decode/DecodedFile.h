#pragma once

#include <cstddef>
#include <cstdint>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace Mox::Host {

/// The resource limits for decoding one texture or mesh. Files are untrusted, and a few hundred
/// bytes can declare an image of gigabytes.
struct DecodeLimits
{
    std::uint32_t Side = 16384; ///< width and height of a texture, in texels
    std::uint64_t Bytes = std::uint64_t(512)
                          << 20; ///< of the file, and of the decoded texture or mesh
    std::uint32_t Seconds = 60;  ///< time limit for decoding

    /// The limit of the decoding program's address space, in bytes: for its own code, the file, the
    /// result and the decoder's working memory.
    std::uint64_t Memory() const { return 4 * Bytes + (std::uint64_t(256) << 20); }
};

/// The reason that a file cannot be decoded. The message does not include the file's name because
/// decoders do not know it.
class DecodeError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

enum class TexelFormat
{
    Unorm8, ///< four bytes, each from 0 to 1
    Float,  ///< four floats
};

constexpr std::size_t SizeOfTexel(TexelFormat format)
{
    return format == TexelFormat::Unorm8 ? 4 : 4 * sizeof(float);
}

/// The texels of a texture: layer by layer, rows from top to bottom, each texel as red, green,
/// blue, alpha. Values are as stored in the file; colours are not converted.
struct TextureImage
{
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    TexelFormat Format = TexelFormat::Unorm8;
    std::vector<std::byte> Bytes;
    std::uint32_t Layers = 1; ///< faces of a cube map or slices of a volume, all of the same size
};

/// Triangles with all supported vertex attributes. Each stream has one entry per vertex, or is
/// empty if the mesh lacks it. The y axis points up, and front faces are anticlockwise as seen from
/// outside.
struct Mesh
{
    std::string Name; ///< for messages
    std::vector<glm::vec3> Positions;
    std::vector<glm::vec3> Normals;
    std::vector<glm::vec3> Tangents;            ///< direction of increasing u
    std::vector<glm::vec3> Binormals;           ///< direction of increasing v
    std::vector<std::vector<glm::vec2>> UvSets; ///< u points right, v points up in the image
    std::vector<std::vector<glm::vec4>> ColourSets;
    std::vector<std::uint32_t> Indices;   ///< three per triangle
    glm::vec3 ViewFrom{0.0f, 0.0f, 1.0f}; ///< the direction towards the viewer
};

} // namespace Mox::Host
