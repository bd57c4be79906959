#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace Mox::Materials {

/// Tables of settings that an enum property chooses from: each row has its word in a field Name,
/// and the words in table order are the property's choices.

template <class Row, std::size_t Count>
constexpr std::array<const char*, Count> NamesOf(const Row (&rows)[Count])
{
    std::array<const char*, Count> names{};
    for (std::size_t i = 0; i < Count; ++i)
        names[i] = rows[i].Name;
    return names;
}

/// The row of a word. The property takes none but the words of the table; should a host have
/// written another one past the setters, the last row answers.
template <class Row, std::size_t Count>
const Row& RowNamed(const Row (&rows)[Count], const std::string& name)
{
    for (const Row& row : rows) {
        if (name == row.Name)
            return row;
    }
    return rows[Count - 1];
}

} // namespace Mox::Materials
