#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Random bytes from the system, as hexadecimal digits.
std::string RandomDigits(std::size_t bytes);

/// The secret that gives a page access. Whoever knows it can do all that the user of the editor
/// can.
class Token
{
public:
    /// A new one of 256 random bits.
    Token() : _text(RandomDigits(32)) {}

    /// 64 hexadecimal digits.
    const std::string& Text() const { return _text; }

    /// Takes the same time for all texts of one length, so that timing reveals nothing of the
    /// token.
    bool Matches(std::string_view text) const;

private:
    std::string _text;
};

} // namespace Mox::Host
