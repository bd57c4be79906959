#pragma once

#include "mox/Export.h"

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
    text += std::to_string(value);
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
