#pragma once

#include "mox/Export.h"

#include <cstdint>
#include <string>

namespace Mox::Materials {

/// What a binding carries. It picks the class and the defaults. Any 32-bit value can be held.
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

/// The storage format that a type word names, such as "s16n" for "short" with the normalise flag.
/// Any other word, a storage format among them, is given back unchanged.
MOX_API std::string ToStreamFormat(const std::string& word, bool isNormalised);

} // namespace Mox::Materials
