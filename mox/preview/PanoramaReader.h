#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <glm/common.hpp>
#include <glm/gtc/constants.hpp>
#include <glm/vec3.hpp>

namespace Mox::Host {

/// Returns the value of a panorama in a direction, with bilinear filtering. Rows run from straight
/// up to straight down, and columns once around, with the direction -z in the middle and x to its
/// right.
/// @param at returns the texel of a column and a row
template <class TexelAt>
auto ReadPanorama(std::uint32_t width, std::uint32_t height, const glm::vec3& direction,
                  const TexelAt& at)
{
    constexpr float pi = glm::pi<float>();
    const float across = 0.5f + std::atan2(direction.x, -direction.z) / (2.0f * pi);
    const float down = std::acos(std::clamp(direction.y, -1.0f, 1.0f)) / pi;
    const float x = across * static_cast<float>(width) - 0.5f;
    const float y =
        std::clamp(down * static_cast<float>(height) - 0.5f, 0.0f, static_cast<float>(height - 1));
    const float left = std::floor(x);
    const auto column = static_cast<std::uint32_t>(left + static_cast<float>(width));
    const auto row = static_cast<std::uint32_t>(y);
    const std::uint32_t below = std::min(row + 1, height - 1);
    const auto mixed = [&](std::uint32_t line) {
        return glm::mix(at(column % width, line), at((column + 1) % width, line), x - left);
    };
    return glm::mix(mixed(row), mixed(below), y - static_cast<float>(row));
}

} // namespace Mox::Host
