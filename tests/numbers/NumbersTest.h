#pragma once

#include "tests/numbers/Comparison.h"
#include "tests/numbers/ValueRunner.h"
#include "tests/support/DeviceTest.h"

/// Runs materials and compares what comes out.
class NumbersTest : public DeviceTest<ValueRunner>
{
public:
    /// Values that programs are likely to get wrong: whole numbers, negative ones, those beside
    /// branches, and any from -4 to 4. The same seed gives the same values.
    static std::vector<Numbers> MakeValues(std::size_t seed, std::size_t count);

protected:
    /// The same as of the runner; a material without a program fails the test and gives nothing.
    std::vector<Numbers> Evaluate(const std::string& material, const RunInputs& inputs) const;

    /// What the sink must get as one of its numbers in a case.
    using Expectation = std::function<Result(std::size_t index, std::size_t at)>;

    /// Evaluates a material and compares the first numbers of every case.
    void Compare(const std::string& material, const RunInputs& inputs, std::size_t count,
                 const Expectation& expected, Comparison& comparison) const;
};

/// A sink that reads the ports of "node", which have blanks between them, as lines of a material.
std::string WriteSink(const char* precision, const std::string& ports);
