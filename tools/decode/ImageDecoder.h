#pragma once

#include "mox/decode/DecodedFile.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace Mox::Host {

/// The content of a file.
using FileBytes = std::span<const std::byte>;

/// Whether a file starts with these bytes.
bool StartsWith(FileBytes file, std::string_view start);

/// Creates an image of zeros for a decoder to fill. Decoders call it as soon as they have read the
/// header.
/// @throws DecodeError if an image of this size is empty or exceeds a limit
TextureImage MakeImage(std::uint64_t width, std::uint64_t height, TexelFormat format,
                       const DecodeLimits& limits);

/// Decodes a PNG, JPEG, OpenEXR or Radiance HDR file; the format is detected from its first bytes.
/// @throws DecodeError if the file is in none of these formats, is damaged or exceeds a limit
TextureImage DecodeImage(FileBytes file, const DecodeLimits& limits);

// The decoders of the formats. Each throws DecodeError as DecodeImage does.

TextureImage DecodePng(FileBytes file, const DecodeLimits& limits);

/// Treats a file as damaged if libjpeg issues a warning; it is rejected instead of partially
/// decoded.
TextureImage DecodeJpeg(FileBytes file, const DecodeLimits& limits);

/// Reads the channels R, G, B and A, or luminance, of the first part. The image covers the display
/// window.
TextureImage DecodeExr(FileBytes file, const DecodeLimits& limits);

TextureImage DecodeHdr(FileBytes file, const DecodeLimits& limits);

} // namespace Mox::Host
