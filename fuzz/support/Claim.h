#pragma once

#include "mox/Text.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

/// Ends the program, for the fuzzer to keep the input, unless what is claimed of the code holds.
inline void Claim(bool holds, std::string_view claim)
{
    if (holds)
        return;
    std::cerr << "does not hold: " << claim << '\n';
    std::abort();
}

/// The same for texts that must be equal.
inline void ClaimEqual(std::string_view actual, std::string_view expected, std::string_view claim)
{
    if (actual != expected)
        Claim(false,
              Mox::Materials::Compose(claim, "\n--- is\n", actual, "\n--- must be\n", expected));
}
