#pragma once

#include <string>

namespace Mox::Host {

/// An opaque colour; each part is from 0 to 1.
struct Colour
{
    float Red;
    float Green;
    float Blue;

    /// "#rrggbb"; parts out of range are taken to its end.
    std::string Format() const;
};

/// From a to b: share 0 gives a, 1 gives b.
Colour Mix(const Colour& a, const Colour& b, float share);

/// The wanted colour if text in it can be read on the background; else black or white, whichever
/// can be read better.
Colour ReadableOn(const Colour& background, const Colour& wanted);

} // namespace Mox::Host
