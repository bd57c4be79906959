#include "mox/program/ShaderTypeText.h"

#include <cstdint>

namespace Mox::Host {

std::optional<ShaderType> ParseShaderType(std::string_view text)
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

} // namespace Mox::Host
