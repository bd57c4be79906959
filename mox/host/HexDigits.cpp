#include "mox/host/HexDigits.h"

namespace Mox::Host {

std::string HexDigits(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += {digits[byte / 16], digits[byte % 16]};
    }
    return text;
}

} // namespace Mox::Host
