#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Bits of the system's random generator, as hexadecimal digits.
std::string RandomDigits(std::size_t bytes);

/// The secret that lets a page in. Whoever knows it may do all that the person at the keyboard may.
class Token
{
public:
    /// A new one of 256 random bits.
    Token() : _text(RandomDigits(32)) {}

    /// 64 hexadecimal digits.
    const std::string& Text() const { return _text; }

    /// Takes equally long for all texts of one length, so that time tells nothing of the token.
    bool Matches(std::string_view text) const;

private:
    std::string _text;
};

} // namespace Mox::Host
