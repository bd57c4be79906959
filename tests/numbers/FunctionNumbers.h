#pragma once

#include "tests/numbers/NumbersTest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

constexpr std::size_t mostPorts = 5;

/// The values at the ports of a function, in order, for one component of the result.
struct Arguments
{
    std::array<std::array<double, 4>, mostPorts> Ports;
    std::size_t Count;
    std::size_t Component;

    double operator[](std::size_t port) const { return Ports[port][Component]; }
};

/// The parameter of reference implementations.
using In = const Arguments&;

/// A result with a single rounding.
inline Result Rounded(double value)
{
    return Expected{value, std::abs(value)};
}

inline double Saturate(double x)
{
    return std::clamp(x, 0.0, 1.0);
}

inline Result OfScale(double scale, double value)
{
    return Expected{value, scale};
}

/// A power is computed from a logarithm and an exponential, so its error grows with the exponent.
/// The logarithm is undefined below zero, and at zero for exponents of zero or less.
Result Power(double base, double exponent);

enum class Kind
{
    Wide,      ///< the node's component count
    Scalar,    ///< one component, whatever the node's count
    Connected, ///< a scalar that must be connected
    Pair,      ///< two components, must be connected
    Vector,    ///< three components, must be connected
    Colour     ///< a vector without negative components
};

struct Port
{
    const char* Name;
    const char* Property = ""; ///< holds the value if unconnected; if there is none, the value is
                               ///< zero
    double Default = 0.0;      ///< value that the tests assign to the property
    Kind Is = Kind::Wide;
};

using Ports = std::vector<Port>;

inline const Port value1 = {"in_value1", "Default Value 1", 0.75};
inline const Port value2 = {"in_value2", "Default Value 2", -1.5};

struct Function
{
    const char* Name;
    Ports Inputs;
    Tolerance Allowed;
    Result (*Of)(In in);
    std::size_t Width = 0; ///< width of the result; 0 is the node's count
};

/// One way to use a function. Ports are represented by bits of masks.
struct Use
{
    std::size_t Count = 3;
    const char* Precision = "float";
    unsigned Connected = ~0u;
    unsigned Narrow = 0; ///< connected to a single component, whatever Count is
    const char* Settings = "";
};

/// Compares functions that nodes generate with reference implementations, in all component counts
/// and precisions, with and without edges at their ports.
class FunctionNumbers : public NumbersTest
{
protected:
    /// @param type of the node, with the property that selects the function
    /// @param moreUses additional uses of every function
    /// @param output port of the node with the result
    void CompareAll(const std::string& type, std::span<const Function> functions,
                    const std::vector<Use>& moreUses = {}, const char* output = "out_value") const;
};
