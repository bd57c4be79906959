#pragma once

#include "tests/numbers/FloatTarget.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// A number as mathematics has it, and the sizes that rounding errors of its computation go by.
struct Expected
{
    double Value;
    double Scale; ///< size of the largest number on the way, at least that of Value
};

/// Nothing where the language leaves the result open.
using Result = std::optional<Expected>;

/// How far off the result of an operation may be.
struct Tolerance
{
    double Steps;       ///< of the last bit of a 32-bit float, times the scale
    const char* Reason; ///< for people
};

constexpr Tolerance exact = {0.0, "nothing is rounded"};
constexpr Tolerance once = {1.0, "one rounding, which may go either way"};
constexpr Tolerance powered = {8.0, "4 steps each for the logarithm and for the exponential"};

/// Compares results with a reference, counts what was compared, and fails the running test where
/// they differ.
class Comparison
{
public:
    Comparison(std::string name, const Tolerance& tolerance);
    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    /// Says what was measured in the test's properties. A comparison that has left out most
    /// of what it was given has failed.
    ~Comparison();

    /// @param expected left out if there is nothing, or a scale beyond the floats
    /// @param describe the inputs, for the message
    void Check(float result, const Result& expected, const std::function<std::string()>& describe);

private:
    std::string _name;
    Tolerance _tolerance;
    std::size_t _compared = 0;
    std::size_t _leftOut = 0;
    std::size_t _wrong = 0;
    double _worst = 0.0; ///< steps
};

/// Numbers as a message shows them, all digits given.
std::string Show(const Numbers& numbers, std::size_t count = 4);
std::string Show(double number);
