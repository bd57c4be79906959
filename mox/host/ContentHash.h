#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// Formats each byte as two lower-case hexadecimal digits.
std::string HexDigits(std::string_view bytes);

/// Computes a name of 32 hexadecimal digits from several strings together. Equal input yields equal
/// names on every machine; different input yields different names, except with negligible
/// probability. The hash offers no protection against someone who constructs a collision.
/// @param header ignored at its first occurrence in each string; may be empty
std::string HashContent(const std::vector<std::string>& texts, const std::string& header);

} // namespace Mox::Host
