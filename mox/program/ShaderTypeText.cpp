#include "mox/program/ShaderTypeText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace Mox::Host {

namespace {

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
