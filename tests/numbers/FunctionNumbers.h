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

/// What stands at the ports of a function, in their order, seen from one component of the result.
struct Arguments
{
    std::array<std::array<double, 4>, mostPorts> Ports;
    std::size_t Count;
    std::size_t Component;

    double operator[](std::size_t port) const { return Ports[port][Component]; }
};

/// A number that comes out of one rounding.
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

enum class Kind
{
    Wide,      ///< of the node's count
    Scalar,    ///< whatever the node's count
    Connected, ///< a scalar that must have an edge
    Pair,      ///< of two components, likewise
    Vector,    ///< of three components, likewise
    Colour     ///< a vector without negative components
};

struct Port
{
    const char* Name;
    const char* Property = ""; ///< its value without an edge; none: it is zero
    double Default = 0.0;      ///< that the tests give the property
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
    Result (*Of)(const Arguments& in);
    std::size_t Width = 0; ///< of the result; 0 is the node's count
};

/// A way to use a function. Ports are named by the bits of masks.
struct Use
{
    std::size_t Count = 3;
    const char* Precision = "float";
    unsigned Connected = ~0u;
    unsigned Narrow = 0; ///< fed with one component, whatever Count is
    const char* Settings = "";
};

/// Compares functions that nodes write with references, in all counts and precisions, with and
/// without edges at their ports.
class FunctionNumbers : public NumbersTest
{
protected:
    /// @param type of the node, with the property that chooses the function
    /// @param moreUses of every function
    /// @param output port of the node with the result
    void CompareAll(const std::string& type, std::span<const Function> functions,
                    const std::vector<Use>& moreUses = {}, const char* output = "out_value") const;
};
