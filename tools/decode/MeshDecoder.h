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
    Gltf, ///< in text or binary form
};

/// Reads a file that a mesh refers to.
/// @throws DecodeError if it cannot be read
using ReadBeside = std::function<std::vector<std::byte>(const std::string& name)>;

/// Decodes a mesh and merges all its parts, as described for FileDecoder. assimp crashes on some
/// files, so this must run in a separate process.
/// @throws DecodeError if the file is not in the format, has no triangles or exceeds a limit
Mesh DecodeMesh(FileBytes file, MeshFormat format, const ReadBeside& readBeside,
                const DecodeLimits& limits);

} // namespace Mox::Host
