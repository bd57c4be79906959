#pragma once

#include "mox/Export.h"

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
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

/// Room for a part of a text, so that most texts are allocated once.
inline std::size_t RoomForPart(std::string_view part)
{
    return part.size();
}

template <class Number>
requires std::integral<Number> || std::same_as<Number, float> std::size_t RoomForPart(Number)
{
    constexpr std::size_t usualDigits = 6;
    return usualDigits;
}

/// Strings and numbers one after another as one text, independent of any locale.
template <class... Parts>
std::string Compose(const Parts&... parts)
{
    std::string text;
    text.reserve((RoomForPart(parts) + ... + 0));
    (AppendPart(text, parts), ...);
    return text;
}

} // namespace Mox::Materials
