#pragma once

#include "mox/Text.h"

#include <stdexcept>
#include <string_view>

/// Throws an exception with the claim unless it holds. In a fuzzer nothing catches it, so the input
/// is kept.
inline void Claim(bool holds, std::string_view claim)
{
    if (!holds)
        throw std::logic_error(Mox::Materials::Compose("does not hold: ", claim));
}

/// The same for strings that must be equal.
inline void ClaimEqual(std::string_view actual, std::string_view expected, std::string_view claim)
{
    if (actual != expected)
        Claim(false,
              Mox::Materials::Compose(claim, "\n--- is\n", actual, "\n--- must be\n", expected));
}
