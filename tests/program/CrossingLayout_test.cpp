#include "mox/program/CrossingLayout.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <map>
#include <numeric>

using namespace Mox::Host;

namespace {

std::int32_t WidthOf(ComponentMask mask)
{
    return std::popcount(mask);
}

/// Checks that the pieces contain each component of the values exactly once and do not overlap.
void CheckPieces(const std::vector<ComponentMask>& values,
                 const std::vector<std::vector<CrossingPiece>>& pieces)
{
    std::map<std::int32_t, unsigned> registers;
    for (std::size_t i = 0; i < values.size(); ++i) {
        ComponentMask found = 0;
        for (const CrossingPiece& piece : pieces[i]) {
            const unsigned mask = (1u << piece.Width) - 1u;
            ASSERT_EQ(found & mask << piece.Component, 0u);
            found |= mask << piece.Component;
            ASSERT_LE(piece.RegisterComponent + piece.Width, 4);
            ASSERT_EQ(registers[piece.Register] & mask << piece.RegisterComponent, 0u);
            registers[piece.Register] |= mask << piece.RegisterComponent;
        }
        ASSERT_EQ(found, values[i]);
    }
}

TEST(CrossingLayout, PacksDenselyAndSplitsOnlyWhatWouldNotFit)
{
    Random random(DrawSeed());
    for (int run = 0; run < 500; ++run) {
        std::vector<std::int32_t> registers{7, 2, 3, 9, 0, 1};
        registers.resize(random.Below(7));
        std::vector<ComponentMask> values(random.Below(12));
        std::map<std::int32_t, std::int32_t> counts;
        for (ComponentMask& value : values) {
            value = static_cast<ComponentMask>(random.Below(16));
            ++counts[WidthOf(value)];
        }
        const std::int32_t components =
            std::accumulate(values.begin(), values.end(), 0,
                            [](int sum, ComponentMask value) { return sum + WidthOf(value); });
        const auto pieces = PackCrossing(values, registers);
        const auto room = static_cast<std::int32_t>(registers.size());
        ASSERT_EQ(pieces.has_value(), components <= 4 * room);
        if (!pieces)
            continue;
        CheckPieces(values, *pieces);
        // A lower bound for unsplit values: threes and fours need a register each, twos half a
        // register.
        const std::int32_t gaps = counts[3] + (counts[2] % 2) * 2;
        const std::int32_t fewest =
            counts[4] + counts[3] + (counts[2] + 1) / 2 + (std::max(counts[1] - gaps, 0) + 3) / 4;
        for (const auto& value : *pieces) {
            for (const CrossingPiece& piece : value)
                EXPECT_TRUE(fewest > room || piece.Register == value.front().Register);
        }
    }
}

} // namespace
