#pragma once

#include "mox/Export.h"

#include <cstdint>
#include <string>

namespace Mox::Materials {

/// The kind of data that a binding carries, which determines its class and defaults. Other 32-bit
/// values are preserved.
enum class StreamType : std::uint32_t
{
    Invalid = 0,
    Position = 1,
    Normal = 2,
    Uv = 3,
    Tangent = 4,
    Binormal = 5,
    Colour = 6,
    BlendIndices = 7,
    BlendWeights = 8,
    Texture = 9,
    Float = 10,
};

/// Converts a type name to a storage format, such as "short" with the normalised flag to "s16n".
/// Any other string, including a storage format, is returned unchanged.
MOX_API std::string ToStreamFormat(const std::string& word, bool isNormalised);

} // namespace Mox::Materials
