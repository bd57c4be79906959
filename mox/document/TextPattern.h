#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Mox::Host {

/// A regular expression that whole texts are compared with, in one pass and without memory.
///
/// It is written as in XML Schema, but of ASCII alone and with no more than characters, classes
/// such as "[0-9eE]", groups, alternatives, and "?", "*", "+" or a count such as "{2}".
class TextPattern
{
public:
    /// Numbers the places in the expression where a character can stand; a bit for each.
    using Positions = std::uint64_t;
    static constexpr std::size_t mostPositions = 64;

    /// @throws std::logic_error if the expression is none, or has more positions or other forms
    explicit TextPattern(std::string_view expression);

    bool Matches(std::string_view text) const;

private:
    class Reader;

    std::array<Positions, 128> _withCharacter{};       ///< by the character that may stand there
    std::array<Positions, mostPositions> _followers{}; ///< what may come next, by position
    Positions _first = 0;
    Positions _last = 0;
    bool _matchesNothing = false; ///< the empty text
};

} // namespace Mox::Host
