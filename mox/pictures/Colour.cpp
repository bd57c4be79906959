#include "mox/pictures/Colour.h"

#include <algorithm>
#include <cmath>

namespace Mox::Host {

namespace {

/// Clamps a number to the range from 0 to 1; NaN becomes 0.
float Clamp(float part)
{
    return part > 0.0f ? std::min(part, 1.0f) : 0.0f;
}

/// Returns the relative luminance: 0 for black, 1 for white.
float LuminanceOf(const Colour& colour)
{
    const auto linear = [](float part) { return std::pow(Clamp(part), 2.2f); };
    return 0.2126f * linear(colour.Red) + 0.7152f * linear(colour.Green) +
           0.0722f * linear(colour.Blue);
}

/// Returns the contrast ratio: 1 for equal luminance, 21 for black and white.
float ContrastOf(const Colour& a, const Colour& b)
{
    const auto [darker, lighter] = std::minmax({LuminanceOf(a), LuminanceOf(b)});
    constexpr float flare = 0.05f;
    return (lighter + flare) / (darker + flare);
}

} // namespace

std::string Colour::Format() const
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "#";
    for (const float part : {Red, Green, Blue}) {
        const auto byte = static_cast<unsigned>(std::lround(Clamp(part) * 255.0f));
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

Colour Mix(const Colour& a, const Colour& b, float share)
{
    const auto mix = [share](float from, float to) {
        return Clamp(from) + share * (Clamp(to) - Clamp(from));
    };
    return {mix(a.Red, b.Red), mix(a.Green, b.Green), mix(a.Blue, b.Blue)};
}

Colour ReadableOn(const Colour& background, const Colour& wanted)
{
    constexpr float readable = 4.5f;
    constexpr Colour black{0, 0, 0};
    constexpr Colour white{1, 1, 1};
    if (ContrastOf(background, wanted) >= readable)
        return wanted;
    return ContrastOf(background, black) >= ContrastOf(background, white) ? black : white;
}

} // namespace Mox::Host
