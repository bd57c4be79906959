#pragma once

#include <string>
#include <string_view>

namespace Mox::Host {

/// Two lower-case hexadecimal digits for each byte.
std::string HexDigits(std::string_view bytes);

} // namespace Mox::Host
