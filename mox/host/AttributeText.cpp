#include "mox/host/AttributeText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace Mox::Host {

namespace {

constexpr std::string_view spaces = " \t\r\n";

/// Splits a string at a separator and trims the parts.
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

constexpr std::int32_t longestArray = 1024;

std::optional<ShaderType> ParseElement(std::string_view text)
{
    constexpr std::int32_t widest = 4;
    for (auto component = static_cast<std::int32_t>(ComponentType::Float);
         component <= static_cast<std::int32_t>(ComponentType::SamplerRect); ++component) {
        const auto type = static_cast<ComponentType>(component);
        for (std::int32_t rows = 1; rows <= widest; ++rows) {
            for (std::int32_t columns = 1; columns <= widest; ++columns) {
                const ShaderType candidate(type, columns, rows, 1);
                if (candidate.Format() == text)
                    return candidate;
            }
        }
    }
    return std::nullopt;
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

std::optional<ShaderType> ParseShaderType(std::string_view text)
{
    const std::size_t bracket = std::min(text.find('['), text.size());
    auto type = ParseElement(text.substr(0, bracket));
    if (type && bracket < text.size()) {
        const char* digits = text.data() + bracket + 1;
        std::from_chars(digits, text.data() + text.size(), type->ArrayLength);
        if (type->ArrayLength < 2 || type->ArrayLength > longestArray || type->Format() != text)
            return std::nullopt;
    }
    return type;
}

} // namespace Mox::Host
