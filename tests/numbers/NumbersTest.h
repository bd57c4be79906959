#pragma once

#include "tests/numbers/Comparison.h"
#include "tests/numbers/ValueRunner.h"
#include "tests/support/DeviceTest.h"

/// Runs materials and compares their outputs.
class NumbersTest : public DeviceTest<ValueRunner>
{
public:
    /// Values that programs are likely to handle incorrectly: integers, negative numbers, values
    /// next to branch conditions, and arbitrary values from -4 to 4. The same seed gives the same
    /// values.
    static std::vector<Numbers> MakeValues(std::size_t seed, std::size_t count);

protected:
    /// Like ValueRunner::Evaluate; if the material has no program, fails the test and returns
    /// nothing.
    std::vector<Numbers> Evaluate(const std::string& material, const RunInputs& inputs) const;

    /// The expected value of one of the sink's components in a case.
    using Expectation = std::function<Result(std::size_t index, std::size_t at)>;

    /// Evaluates a material and compares the first components of every case.
    void Compare(const std::string& material, const RunInputs& inputs, std::size_t count,
                 const Expectation& expected, Comparison& comparison) const;
};

/// Formats a sink that reads the given ports of "node", separated by spaces, as lines of a
/// material.
std::string WriteSink(const char* precision, const std::string& ports);
