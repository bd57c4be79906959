#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/decode/OpenFile.h"
#include "mox/decode/TextureCache.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The program mox-decode that belongs to the library mox_materials. Its path relative to the
/// library is fixed, both in a build tree and in an installation.
std::filesystem::path DefaultDecodeProgram();

struct DecodeSettings
{
    DecodeLimits Limits;
    std::filesystem::path Program = DefaultDecodeProgram(); ///< the decoding program
};

/// Whether a file is a mesh according to its extension: .obj, .gltf or .glb.
bool IsMeshFile(const std::filesystem::path& file);

/// Reads untrusted textures and meshes. Each file is decoded in a separate process with memory and
/// time limits, so a malicious file can at worst fail to load. Use one object for many files: it
/// caches recent textures and decodes them again only if their files change. Not thread-safe.
class FileDecoder
{
public:
    explicit FileDecoder(DecodeSettings settings = {});

    const DecodeLimits& Limits() const { return _settings.Limits; }

    /// Reads a PNG, JPEG, OpenEXR or Radiance HDR file; the format is detected from its content.
    /// Components of more than eight bits are converted to floats.
    /// @throws HostError naming the file if it is not a regular file, has an unsupported format, is
    ///         damaged or exceeds a limit, or if its decoder fails
    std::shared_ptr<const TextureImage> ReadTexture(const std::filesystem::path& file);

    /// Reads an OBJ or glTF file and merges all its parts into one mesh. Missing normals are
    /// computed; so are missing tangents and binormals if there are texture coordinates. Attributes
    /// that only some parts have are set to zero uv or white vertex colours in the others. Buffers
    /// that a glTF file refers to must be in its folder or below.
    /// @throws HostError as ReadTexture does, or if there are no triangles
    Mesh ReadMesh(const std::filesystem::path& file) const;

    /// Reads a mesh from the bytes of such a file. It must not refer to other files.
    /// @param name of the file; its extension determines the format
    /// @throws HostError naming the file if it is in neither format, is damaged or exceeds a limit,
    ///         or if its decoder fails
    Mesh ReadMesh(const std::string& name, std::string_view bytes) const;

private:
    Mesh DecodeMesh(const std::filesystem::path& name, OpenFile file, OpenFile folder) const;

    DecodeSettings _settings;
    TextureCache _textures;
};

} // namespace Mox::Host
