#include "mox/host/Condition.h"

#include <algorithm>

namespace Mox::Host {

namespace {

constexpr std::string_view spaces = " \t\r\n";

/// The parts between separators, trimmed.
std::vector<std::string_view> Split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = text.find(separator);
        parts.push_back(TrimSpaces(text.substr(0, end)));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}

} // namespace

std::string_view TrimSpaces(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(spaces), text.size()));
    return text.substr(0, text.find_last_not_of(spaces) + 1);
}

Conditions ParseConditions(std::string_view text)
{
    Conditions conditions;
    if (TrimSpaces(text).empty())
        return conditions;
    for (const std::string_view part : Split(text, ';')) {
        const std::size_t equals = part.find('=');
        Condition& condition = conditions.emplace_back();
        condition.Name = TrimSpaces(part.substr(0, equals));
        if (equals == std::string_view::npos)
            continue;
        for (const std::string_view value : Split(part.substr(equals + 1), ','))
            condition.Values.emplace_back(value);
    }
    return conditions;
}

} // namespace Mox::Host
