#include "mox/program/InterpolantPacking.h"

#include <algorithm>
#include <numeric>

namespace Mox::Host {

std::vector<InterpolantSlot> PackInterpolants(const std::vector<std::int32_t>& widths)
{
    constexpr std::int32_t registerWidth = 4;
    std::vector<std::size_t> order(widths.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return widths[a] > widths[b]; });
    std::vector<InterpolantSlot> slots(widths.size());
    std::vector<std::int32_t> used; // components of each register
    for (const std::size_t value : order) {
        const auto room = std::find_if(used.begin(), used.end(), [&](std::int32_t components) {
            return components + widths[value] <= registerWidth;
        });
        const auto index = static_cast<std::int32_t>(room - used.begin());
        if (room == used.end())
            used.push_back(0);
        std::int32_t& components = used[static_cast<std::size_t>(index)];
        slots[value] = {index, components};
        components += widths[value];
    }
    return slots;
}

std::string_view LettersOf(std::int32_t first, std::int32_t width)
{
    constexpr std::string_view letters = "xyzw";
    return letters.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(width));
}

} // namespace Mox::Host
