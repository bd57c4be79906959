#pragma once

#include <string>

namespace Mox::Host {

/// An opaque colour; components range from 0 to 1.
struct Colour
{
    float Red;
    float Green;
    float Blue;

    /// Formats the colour as "#rrggbb"; components are clamped to the range from 0 to 1.
    std::string Format() const;
};

/// Interpolates linearly: share 0 returns a, 1 returns b.
Colour Mix(const Colour& a, const Colour& b, float share);

/// Returns the wanted text colour if it is readable on the background; otherwise black or white,
/// whichever has more contrast.
Colour ReadableOn(const Colour& background, const Colour& wanted);

} // namespace Mox::Host
