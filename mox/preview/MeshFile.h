#pragma once

#include "mox/preview/Mesh.h"

#include <filesystem>
#include <string>

namespace Mox::Host {

/// Reads a mesh from an OBJ or glTF file, all its parts as one. Normals are worked out where the
/// file has none, and so are tangents and binormals where it has texture coordinates. A part that
/// lacks what another part has gets zero uv and white vertex colours.
/// @throws HostError if the file is none of these or holds no triangles
Mesh ReadMesh(const std::filesystem::path& file);

/// A built-in mesh by its word, "sphere", "plane" or "cube", or else that of a file.
/// @throws HostError as ReadMesh does
Mesh FindMesh(const std::string& nameOrFile);

} // namespace Mox::Host
