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

/// What the decoding of one texture or mesh may cost. Files may come from anybody, and a few
/// hundred bytes can announce an image of gigabytes.
struct DecodeLimits
{
    std::uint32_t Side = 16384; ///< width and height of a texture, in texels
    std::uint64_t Bytes = std::uint64_t(512)
                          << 20; ///< of the file, and of the decoded texture or mesh
    std::uint32_t Seconds = 60;  ///< until the file is decoded

    /// What the decoding program may take of its address space, in bytes: room for its own code,
    /// for the file, for the result and for what decoders need beside these.
    std::uint64_t Memory() const { return 4 * Bytes + (std::uint64_t(256) << 20); }
};

/// Why a file cannot be decoded. The message does not name the file: decoders do not know its name.
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

/// The texels of a texture: one layer after another, rows from top to bottom, each texel red,
/// green, blue, alpha. Values are those that the file stores; colours are not converted.
struct TextureImage
{
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    TexelFormat Format = TexelFormat::Unorm8;
    std::vector<std::byte> Bytes;
    std::uint32_t Layers = 1; ///< faces of a cube map or slices of a volume, each of this size
};

/// Triangles with all that a vertex may carry. Every stream has one entry for each vertex, or is
/// empty if the mesh lacks it. y points up, and outlines run anticlockwise seen from outside.
struct Mesh
{
    std::string Name; ///< for messages
    std::vector<glm::vec3> Positions;
    std::vector<glm::vec3> Normals;
    std::vector<glm::vec3> Tangents;            ///< where u grows
    std::vector<glm::vec3> Binormals;           ///< where v grows
    std::vector<std::vector<glm::vec2>> UvSets; ///< u to the right, v up in the image
    std::vector<std::vector<glm::vec4>> ColourSets;
    std::vector<std::uint32_t> Indices;   ///< three for each triangle
    glm::vec3 ViewFrom{0.0f, 0.0f, 1.0f}; ///< the side from which the mesh is looked at
};

} // namespace Mox::Host
