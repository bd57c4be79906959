#pragma once

#include <cstdint>
#include <string>

/// Makes the body of a Cg function in the form of the rows of CgCases, using values "a", "b" and
/// "c" of a type T with components E. For inputs that are multiples of 1/8 from -4 to 4, the
/// results are exactly representable as floats, independently of the order of computation. The same
/// seed gives the same body.
/// @param count components of T
std::string MakeRandomBody(std::uint32_t seed, int count);
