#pragma once

#include "mox/decode/DecodedFile.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace Mox::Host {

/// The bytes of a file.
using FileBytes = std::span<const std::byte>;

/// Whether a file begins with these bytes.
bool StartsWith(FileBytes file, std::string_view start);

/// An image of zeros for a decoder to fill. Decoders ask for it as soon as they have read the
/// header.
/// @throws DecodeError if an image of this size has no texels or exceeds a limit
TextureImage MakeImage(std::uint64_t width, std::uint64_t height, TexelFormat format,
                       const DecodeLimits& limits);

/// Decodes a PNG, JPEG, OpenEXR or Radiance HDR file; its first bytes decide which.
/// @throws DecodeError if it is none of these, is damaged or exceeds a limit
TextureImage DecodeImage(FileBytes file, const DecodeLimits& limits);

// The decoders of the formats. Each throws DecodeError as DecodeImage does.

TextureImage DecodePng(FileBytes file, const DecodeLimits& limits);

/// A file that libjpeg warns about is damaged; it is refused and not shown in part.
TextureImage DecodeJpeg(FileBytes file, const DecodeLimits& limits);

/// Reads the channels R, G, B and A, or luminance, of the first part. The display window is the
/// image.
TextureImage DecodeExr(FileBytes file, const DecodeLimits& limits);

TextureImage DecodeHdr(FileBytes file, const DecodeLimits& limits);

} // namespace Mox::Host
