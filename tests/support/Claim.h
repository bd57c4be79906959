#pragma once

#include "mox/Text.h"

#include <stdexcept>
#include <string_view>

/// Throws what is claimed of the code unless it holds. Nobody catches that in a fuzzer, which keeps
/// the input then.
inline void Claim(bool holds, std::string_view claim)
{
    if (!holds)
        throw std::logic_error(Mox::Materials::Compose("does not hold: ", claim));
}

/// The same for texts that must be equal.
inline void ClaimEqual(std::string_view actual, std::string_view expected, std::string_view claim)
{
    if (actual != expected)
        Claim(false,
              Mox::Materials::Compose(claim, "\n--- is\n", actual, "\n--- must be\n", expected));
}
