#pragma once

#include "tests/numbers/Comparison.h"
#include "tests/numbers/ValueRunner.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

/// Shares one device among all tests; the validation layer watches all of them.
class NumbersTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    static ValueRunner& Runner();

    /// The same as of the runner; a material without a program fails the test and gives nothing.
    std::vector<Numbers> Evaluate(const std::string& material, const RunInputs& inputs) const;

    /// Values that programs are likely to get wrong: whole numbers, negative ones, those beside
    /// branches, and any from -4 to 4. The same seed gives the same values.
    static std::vector<Numbers> MakeValues(std::uint32_t seed, std::size_t count);
};
