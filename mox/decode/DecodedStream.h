#pragma once

#include "mox/decode/DecodedFile.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>

namespace Mox::Host {

// The answer of the decoding program: a header of fixed size, then the bytes that the header
// announces. Both ends run on one machine, so numbers have its byte order.

/// Writes all of the bytes.
using WriteBytes = std::function<void(std::span<const std::byte>)>;

/// Fills all of the bytes, or throws.
using ReadBytes = std::function<void(std::span<std::byte>)>;

void WriteImage(const TextureImage& image, const WriteBytes& write);

/// Writes the streams and indices; the mesh's name and view are not part of the answer.
void WriteMesh(const Mesh& mesh, const WriteBytes& write);

/// @param message why the file cannot be decoded; its end is cut if it is very long
void WriteFailure(const std::string& message, const WriteBytes& write);

/// Reads an answer that anybody may have written. Nothing is allocated for an image beyond the
/// limits.
/// @throws DecodeError with the message of WriteFailure, or if the answer is not a whole image
TextureImage ReadImage(const ReadBytes& read, const DecodeLimits& limits);

/// The same for a mesh. Streams that are not empty have an entry for each vertex, indices refer to
/// vertices, and positions are finite.
/// @throws DecodeError as ReadImage does
Mesh ReadMesh(const ReadBytes& read, const DecodeLimits& limits);

} // namespace Mox::Host
