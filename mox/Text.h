#pragma once

#include "mox/Export.h"

#include <array>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace Mox::Materials {

/// The value as a text stream in the classic locale prints it by default: six significant digits,
/// no trailing zeros, 1.0 as "1". The global locale has no influence.
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
    std::array<char, 24> digits; // the longest number of 64 bits has 20
    // The sum has a type that has digits, which that of a truth value has not.
    const auto [end, error] = std::to_chars(digits.begin(), digits.end(), value + 0);
    static_cast<void>(error);
    text.append(digits.begin(), end);
}

/// Strings and numbers one after another as one text, independent of any locale.
template <class... Parts>
std::string Compose(const Parts&... parts)
{
    std::string text;
    (AppendPart(text, parts), ...);
    return text;
}

} // namespace Mox::Materials
