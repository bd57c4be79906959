#pragma once

#include "mox/Export.h"

#include <array>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace Mox::Materials {

/// Formats a number like a stream in the classic locale with default settings: six significant
/// digits, no trailing zeros, 1.0 as "1". It does not depend on the global locale.
MOX_API std::string FormatFloat(float value);

inline void AppendPart(std::string& text, std::string_view part)
{
    text += part;
}

inline void AppendPart(std::string& text, float value)
{
    text += FormatFloat(value);
}

inline void AppendPart(std::string& text, std::integral auto value)
{
    std::array<char, 24> digits; // the longest 64-bit number has 20
    // Adding 0 promotes the value to an integer type, because to_chars does not accept bool.
    const auto [end, error] = std::to_chars(digits.begin(), digits.end(), value + 0);
    static_cast<void>(error);
    text.append(digits.begin(), end);
}

/// Concatenates strings and numbers, independently of the locale.
template <class... Parts>
std::string Compose(const Parts&... parts)
{
    std::string text;
    (AppendPart(text, parts), ...);
    return text;
}

} // namespace Mox::Materials
