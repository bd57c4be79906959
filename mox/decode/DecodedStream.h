#pragma once

#include "mox/decode/DecodedFile.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>

namespace Mox::Host {

// The response of the decoding program: a header of fixed size, followed by the data that the
// header describes. Both processes run on the same machine, so numbers are in native byte order.

/// Writes all bytes.
using WriteBytes = std::function<void(std::span<const std::byte>)>;

/// Fills the entire buffer, or throws.
using ReadBytes = std::function<void(std::span<std::byte>)>;

void WriteImage(const TextureImage& image, const WriteBytes& write);

/// Writes the streams and indices; the mesh's name and view direction are not included.
void WriteMesh(const Mesh& mesh, const WriteBytes& write);

/// @param message why the file cannot be decoded; truncated if very long
void WriteFailure(const std::string& message, const WriteBytes& write);

/// Reads an untrusted response. Nothing is allocated for an image that exceeds the limits.
/// @throws DecodeError with the message from WriteFailure, or if the response is not a complete
///         image
TextureImage ReadImage(const ReadBytes& read, const DecodeLimits& limits);

/// The same for a mesh. Ensures that each non-empty stream has one entry per vertex, indices refer
/// to existing vertices, and positions are finite.
/// @throws DecodeError as ReadImage does
Mesh ReadMesh(const ReadBytes& read, const DecodeLimits& limits);

} // namespace Mox::Host
