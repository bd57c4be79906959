#include "mox/program/InterpolantPacking.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>

using namespace Mox::Host;

namespace {

TEST(InterpolantPacking, IsAsDenseAsCanBeAndNeverOverlaps)
{
    Random random(DrawSeed());
    for (int run = 0; run < 200; ++run) {
        std::vector<std::int32_t> widths(random.Below(40));
        std::map<std::int32_t, std::int32_t> counts;
        for (std::int32_t& width : widths) {
            width = static_cast<std::int32_t>(random.Below(4)) + 1;
            ++counts[width];
        }
        const std::vector<InterpolantSlot> slots = PackInterpolants(widths);
        std::map<std::int32_t, unsigned> masks;
        std::int32_t registers = 0;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            ASSERT_LE(slots[i].Component + widths[i], 4);
            const unsigned mask = ((1u << widths[i]) - 1u) << slots[i].Component;
            ASSERT_EQ(masks[slots[i].Register] & mask, 0u);
            masks[slots[i].Register] |= mask;
            registers = std::max(registers, slots[i].Register + 1);
        }
        // No packing can do with fewer: threes and fours need a register each, twos half of one.
        const std::int32_t pairs = (counts[2] + 1) / 2;
        const std::int32_t room = counts[3] + (counts[2] % 2) * 2;
        const std::int32_t fewest =
            counts[4] + counts[3] + pairs + (std::max(counts[1] - room, 0) + 3) / 4;
        EXPECT_EQ(registers, fewest);
    }
}

} // namespace
