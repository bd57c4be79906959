#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Mox {

/// Identifiers of C and all shading languages: an ASCII letter or underscore, followed by letters,
/// digits and underscores. The character classes of <cctype> depend on the locale.

constexpr bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool IsIdentifierStart(char c)
{
    return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool IsIdentifierPart(char c)
{
    return IsIdentifierStart(c) || IsDigit(c);
}

/// Returns whether the whole string is one identifier. Reserved words are accepted.
constexpr bool IsIdentifier(std::string_view text)
{
    return !text.empty() && IsIdentifierStart(text.front()) &&
           std::all_of(text.begin(), text.end(), IsIdentifierPart);
}

/// Calls visit with each word of a string and its position: identifiers, and numbers such as "1e5",
/// which start with a digit.
template <class Visit>
constexpr void ForEachWord(std::string_view text, Visit visit)
{
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin;
        while (end < text.size() && IsIdentifierPart(text[end]))
            ++end;
        if (end > begin)
            visit(text.substr(begin, end - begin), begin);
        begin = std::max(end, begin + 1);
    }
}

/// Makes a name unique by appending "_2", "_3" and so on if it is already in use.
/// @param taken used names, each with the last number appended to it; receives the new name
inline std::string MakeUnique(std::unordered_map<std::string, int>& taken, const std::string& name)
{
    const auto [entry, isNew] = taken.try_emplace(name, 1);
    if (isNew)
        return name;
    int& number = entry->second;
    std::string unique;
    do
        unique = name + "_" + std::to_string(++number);
    while (!taken.try_emplace(unique, 1).second);
    return unique;
}

} // namespace Mox
