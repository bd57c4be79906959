#include "tests/numbers/Comparison.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>

namespace {

constexpr double step = std::numeric_limits<float>::epsilon();

/// Devices may flush smaller numbers to zero.
constexpr double smallestNormal = std::numeric_limits<float>::min();

/// If an intermediate value is larger, the result is undefined.
constexpr double largest = std::numeric_limits<float>::max();

/// At least this share of the values must have a defined result.
constexpr double leastShare = 0.3;

constexpr std::size_t mostMessages = 3;

} // namespace

Comparison::Comparison(std::string name, const Tolerance& tolerance)
    : _name(std::move(name)), _tolerance(tolerance)
{}

Comparison::~Comparison()
{
    EXPECT_GT(_compared, leastShare * static_cast<double>(_compared + _leftOut))
        << _name << ": too little was compared";
    EXPECT_EQ(_wrong, 0u) << _name << ": wrong results of " << _compared;
    std::ostringstream text;
    text << _compared << " compared, " << _leftOut << " left out, worst " << _worst << " of "
         << _tolerance.Steps << " steps (" << _tolerance.Reason << ")";
    testing::Test::RecordProperty(_name, text.str());
}

void Comparison::Check(float result, const Result& expected,
                       const std::function<std::string()>& describe)
{
    if (!expected || !(expected->Scale <= largest)) {
        ++_leftOut;
        return;
    }
    ++_compared;
    const double error = std::abs(result - expected->Value);
    const double allowed = _tolerance.Steps * step * expected->Scale + smallestNormal;
    if (!(error <= allowed)) {
        if (++_wrong <= mostMessages) {
            ADD_FAILURE() << std::setprecision(10) << _name << " of " << describe() << " is "
                          << result << ", not " << expected->Value << " with an error of up to "
                          << allowed;
        }
        return;
    }
    if (expected->Scale > 0.0 && error > smallestNormal)
        _worst = std::max(_worst, error / (step * expected->Scale));
}

std::string Show(const Numbers& numbers, std::size_t count)
{
    std::ostringstream text;
    text << std::setprecision(9) << "(";
    for (std::size_t i = 0; i < count; ++i)
        text << (i == 0 ? "" : ", ") << numbers[i];
    text << ")";
    return text.str();
}

std::string Show(double number)
{
    std::ostringstream text;
    text << std::setprecision(9) << number;
    return text.str();
}
