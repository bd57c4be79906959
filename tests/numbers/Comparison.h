#pragma once

#include "tests/numbers/FloatTarget.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// An exact result, and the scale that determines the rounding error of its computation.
struct Expected
{
    double Value;
    double Scale; ///< magnitude of the largest intermediate value, at least that of Value
};

/// Empty if the language leaves the result undefined.
using Result = std::optional<Expected>;

/// The permitted error of an operation.
struct Tolerance
{
    double Steps;       ///< in units in the last place of a 32-bit float, times the scale
    const char* Reason; ///< shown in the report
};

constexpr Tolerance exact = {0.0, "nothing is rounded"};
constexpr Tolerance once = {1.0, "one rounding, which may go either way"};
constexpr Tolerance powered = {8.0, "4 steps each for the logarithm and for the exponential"};

/// Compares results with a reference, counts the comparisons, and fails the running test on a
/// difference.
class Comparison
{
public:
    Comparison(std::string name, const Tolerance& tolerance);
    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    /// Records the measurements as properties of the test. A comparison that had to skip most of
    /// its values fails.
    ~Comparison();

    /// @param expected skipped if it is empty or its scale exceeds the range of float
    /// @param describe the inputs, for the message
    void Check(float result, const Result& expected, const std::function<std::string()>& describe);

private:
    std::string _name;
    Tolerance _tolerance;
    std::size_t _compared = 0;
    std::size_t _leftOut = 0;
    std::size_t _wrong = 0;
    double _worst = 0.0; ///< in units in the last place
};

/// Formats numbers for a message with all significant digits.
std::string Show(const Numbers& numbers, std::size_t count = 4);
std::string Show(double number);
