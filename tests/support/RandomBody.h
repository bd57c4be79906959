#pragma once

#include <cstdint>
#include <string>

/// The body of a function in Cg, in the form of the rows of CgCases: of values "a", "b" and "c" of
/// a type T with components E. Inputs that are eighths from -4 to 4 make results that floats hold
/// exactly, whatever the order of computation. The same seed gives the same body.
/// @param count components of T
std::string MakeRandomBody(std::uint32_t seed, int count);
