#pragma once

#include <cstdint>

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

} // namespace Mox::Host
