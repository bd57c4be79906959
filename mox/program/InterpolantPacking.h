#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Where a value stands in the registers between the stages.
struct InterpolantSlot
{
    std::int32_t Register;
    std::int32_t Component; ///< first component of the register
};

/// Packs values of one to four components into registers of four, as densely as can be: the widest
/// first, each into the first register with room. A value is never split.
/// @param widths components of each value, 1 to 4
/// @returns a slot for each value
std::vector<InterpolantSlot> PackInterpolants(const std::vector<std::int32_t>& widths);

/// The letters of a value's components in its register, such as "yz".
/// @param first, width within the four of a register
std::string_view LettersOf(std::int32_t first, std::int32_t width);

} // namespace Mox::Host
