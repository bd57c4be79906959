#pragma once

#include <string>
#include <vector>

namespace Mox::Host {

/// A name of 32 hexadecimal digits for these texts together: equal texts have equal names, and
/// different ones, but for an immeasurably small chance, different names. It is the same on every
/// machine. No defence against somebody who wants two texts to share a name.
/// @param header is left out where a text has it for the first time; may be empty
std::string HashContent(const std::vector<std::string>& texts, const std::string& header);

} // namespace Mox::Host
