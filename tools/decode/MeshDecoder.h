#pragma once

#include "mox/decode/DecodedFile.h"
#include "tools/decode/ImageDecoder.h"

#include <functional>
#include <string>
#include <vector>

namespace Mox::Host {

enum class MeshFormat
{
    Obj,
    Gltf, ///< as text or as bytes
};

/// Reads a file that a mesh names.
/// @throws DecodeError if it cannot be read
using ReadBeside = std::function<std::vector<std::byte>(const std::string& name)>;

/// Decodes a mesh, all its parts as one, as FileDecoder promises. assimp crashes on some files, so
/// this belongs into a process of its own.
/// @throws DecodeError if the file is not of the format, has no triangles or exceeds a limit
Mesh DecodeMesh(FileBytes file, MeshFormat format, const ReadBeside& readBeside,
                const DecodeLimits& limits);

} // namespace Mox::Host
