#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/decode/OpenFile.h"
#include "mox/decode/TextureCache.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The program mox-decode that belongs to the library mox_materials: it lies in a fixed place
/// relative to it, in a build tree as in an installed one.
std::filesystem::path DefaultDecodeProgram();

struct DecodeSettings
{
    DecodeLimits Limits;
    std::filesystem::path Program = DefaultDecodeProgram(); ///< the decoding program
};

/// Whether a file is a mesh by its extension: .obj, .gltf or .glb.
bool IsMeshFile(const std::filesystem::path& file);

/// Reads textures and meshes that may come from anybody. Each file is decoded in a process of its
/// own with limits of memory and time, so that the worst that a file can do is not to be read. Keep
/// an object for many files: it remembers the last textures, and does not decode them again until
/// their files change. Only one thread at a time may use an object.
class FileDecoder
{
public:
    explicit FileDecoder(DecodeSettings settings = {});

    const DecodeLimits& Limits() const { return _settings.Limits; }

    /// Reads a PNG, JPEG, OpenEXR or Radiance HDR file; its content decides which. More than eight
    /// bits become floats.
    /// @throws HostError naming the file if it is not a regular file, is none of these, is damaged,
    ///         exceeds a limit, or if its decoder fails
    std::shared_ptr<const TextureImage> ReadTexture(const std::filesystem::path& file);

    /// Reads an OBJ or glTF file, all its parts as one mesh. Missing normals are computed, and
    /// missing tangents and binormals where there are texture coordinates. A part that lacks what
    /// another part has gets zero uv and white vertex colours. Buffers that a glTF file names must
    /// lie in its folder or below.
    /// @throws HostError as ReadTexture does, or if there are no triangles
    Mesh ReadMesh(const std::filesystem::path& file) const;

    /// Reads the bytes of such a file. It may not name others.
    /// @param name of the file; its extension tells the format
    /// @throws HostError naming it if it is neither of these, is damaged, exceeds a limit, or if
    ///         its decoder fails
    Mesh ReadMesh(const std::string& name, std::string_view bytes) const;

private:
    Mesh DecodeMesh(const std::filesystem::path& name, OpenFile file, OpenFile folder) const;

    DecodeSettings _settings;
    TextureCache _textures;
};

} // namespace Mox::Host
