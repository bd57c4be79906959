#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Random bytes from the operating system, as hexadecimal digits.
std::string RandomDigits(std::size_t bytes);

/// The secret that grants a page access. Anyone who knows it can do everything that the editor's
/// user can.
class Token
{
public:
    /// Creates a new token of 256 random bits.
    Token() : _text(RandomDigits(32)) {}

    /// 64 hexadecimal digits.
    const std::string& Text() const { return _text; }

    /// Takes the same time for all strings of the same length, so that timing reveals nothing about
    /// the token.
    bool Matches(std::string_view text) const;

private:
    std::string _text;
};

} // namespace Mox::Host
