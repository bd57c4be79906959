#pragma once

#include <string>
#include <string_view>

namespace Mox::Materials {

/// Converts A to Z to lower case, independently of the locale.
inline std::string ToLower(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

} // namespace Mox::Materials
