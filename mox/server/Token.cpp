#include "mox/server/Token.h"

#include "mox/host/ContentHash.h"

#include <cerrno>
#include <sys/random.h>
#include <system_error>

namespace Mox::Host {

std::string RandomDigits(std::size_t bytes)
{
    std::string random(bytes, '\0');
    for (std::size_t filled = 0; filled < bytes;) {
        const ssize_t count = getrandom(random.data() + filled, bytes - filled, 0);
        if (count < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category(),
                                    "cannot get random numbers from the system");
        filled += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return HexDigits(random);
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
