#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Mox::Materials {

/// Words of attributes. Each enumeration has a table of them in the order of its values.

/// The word of a value; empty for a value behind the end of the table.
template <class Value, std::size_t Count>
std::string WordOf(const char* const (&words)[Count], Value value)
{
    const auto index = static_cast<std::uint32_t>(value);
    return index < Count ? words[index] : "";
}

/// The value of a word; 0 for a word that the table does not have.
template <class Value, std::size_t Count>
Value ValueOf(const char* const (&words)[Count], const std::string& word)
{
    for (std::uint32_t index = 1; index < Count; ++index) {
        if (word == words[index])
            return static_cast<Value>(index);
    }
    return static_cast<Value>(0);
}

/// The text with the letters A to Z in lower case, whatever the locale.
std::string ToLower(std::string text);

} // namespace Mox::Materials
