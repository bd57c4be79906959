#include "mox/server/Token.h"

#include <cerrno>
#include <sys/random.h>
#include <system_error>
#include <vector>

namespace Mox::Host {

std::string RandomDigits(std::size_t bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::vector<unsigned char> bits(bytes);
    for (std::size_t filled = 0; filled < bytes;) {
        const ssize_t count = getrandom(bits.data() + filled, bytes - filled, 0);
        if (count < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "there are no random numbers");
        filled += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    std::string text;
    for (const unsigned char byte : bits)
        text += {digits[byte / 16], digits[byte % 16]};
    return text;
}

bool Token::Matches(std::string_view text) const
{
    if (text.size() != _text.size())
        return false;
    unsigned difference = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        difference |= static_cast<unsigned char>(text[i] ^ _text[i]);
    return difference == 0;
}

} // namespace Mox::Host
