#include "mox/document/TextPattern.h"

#include "mox/Text.h"

#include <bit>
#include <bitset>
#include <stdexcept>

namespace Mox::Host {

/// Builds the automaton of positions (Glushkov's) while it reads the expression.
class TextPattern::Reader
{
public:
    Reader(TextPattern& pattern, std::string_view expression)
        : _pattern(pattern), _expression(expression)
    {}

    void Read()
    {
        const Part whole = ReadAlternatives();
        if (!AtEnd())
            Refuse();
        _pattern._first = whole.First;
        _pattern._last = whole.Last;
        _pattern._matchesNothing = whole.IsOptional;
    }

private:
    using Characters = std::bitset<std::tuple_size_v<decltype(_withCharacter)>>;

    /// A part of the expression: where a text of it can begin and end.
    struct Part
    {
        Positions First = 0;
        Positions Last = 0;
        bool IsOptional = true; ///< the empty text is one of it
    };

    Part ReadAlternatives()
    {
        Part part = ReadSequence();
        while (Take('|')) {
            const Part other = ReadSequence();
            part.First |= other.First;
            part.Last |= other.Last;
            part.IsOptional |= other.IsOptional;
        }
        return part;
    }

    Part ReadSequence()
    {
        Part part;
        while (!AtEnd() && _expression[_place] != '|' && _expression[_place] != ')')
            part = Join(part, ReadRepeated());
        return part;
    }

    Part ReadRepeated()
    {
        const std::size_t begin = _place;
        Part part = ReadOne();
        if (Take('?')) {
            part.IsOptional = true;
        } else if (Take('*')) {
            Follow(part.Last, part.First);
            part.IsOptional = true;
        } else if (Take('+')) {
            Follow(part.Last, part.First);
        } else if (Take('{')) {
            const char count = Next();
            if (count < '1' || count > '9' || !Take('}'))
                Refuse();
            const std::size_t end = _place;
            for (char i = '1'; i < count; ++i) {
                _place = begin;
                part = Join(part, ReadOne());
            }
            _place = end;
        }
        return part;
    }

    Part ReadOne()
    {
        if (Take('(')) {
            const Part part = ReadAlternatives();
            if (!Take(')'))
                Refuse();
            return part;
        }
        Characters characters;
        if (Take('[')) {
            do
                ReadRange(characters);
            while (!Take(']'));
        } else {
            characters.set(ReadCharacter("\\|.?*+{}()[]^$"));
        }
        return AddPosition(characters);
    }

    void ReadRange(Characters& characters)
    {
        constexpr std::string_view signs = "\\-[]^";
        const std::size_t first = ReadCharacter(signs);
        const std::size_t last = Take('-') ? ReadCharacter(signs) : first;
        if (last < first)
            Refuse();
        for (std::size_t character = first; character <= last; ++character)
            characters.set(character);
    }

    /// @param signs characters that only stand for themselves behind a backslash
    std::size_t ReadCharacter(std::string_view signs)
    {
        const bool isEscaped = Take('\\');
        const char character = Next();
        if (signs.find(character) != std::string_view::npos ? !isEscaped : isEscaped)
            Refuse();
        if (static_cast<unsigned char>(character) >= Characters().size())
            Refuse();
        return static_cast<std::size_t>(character);
    }

    Part AddPosition(const Characters& characters)
    {
        if (_count == mostPositions)
            Refuse();
        const Positions position = Positions(1) << _count++;
        for (std::size_t character = 0; character < characters.size(); ++character) {
            if (characters[character])
                _pattern._withCharacter[character] |= position;
        }
        return {position, position, false};
    }

    Part Join(const Part& left, const Part& right)
    {
        Follow(left.Last, right.First);
        return {left.IsOptional ? left.First | right.First : left.First,
                right.IsOptional ? left.Last | right.Last : right.Last,
                left.IsOptional && right.IsOptional};
    }

    void Follow(Positions positions, Positions followers)
    {
        for (; positions; positions &= positions - 1)
            _pattern._followers[std::countr_zero(positions)] |= followers;
    }

    bool AtEnd() const { return _place == _expression.size(); }

    bool Take(char character)
    {
        const bool isNext = !AtEnd() && _expression[_place] == character;
        _place += isNext;
        return isNext;
    }

    char Next()
    {
        if (AtEnd())
            Refuse();
        return _expression[_place++];
    }

    [[noreturn]] void Refuse() const
    {
        throw std::logic_error(Materials::Compose("not understood in a pattern: \"", _expression,
                                                  "\", character ", _place));
    }

    TextPattern& _pattern;
    std::string_view _expression;
    std::size_t _place = 0;
    std::size_t _count = 0; ///< of positions
};

TextPattern::TextPattern(std::string_view expression)
{
    Reader(*this, expression).Read();
}

bool TextPattern::Matches(std::string_view text) const
{
    if (text.empty())
        return _matchesNothing;
    Positions possible = _first;
    Positions reached = 0;
    for (const char character : text) {
        const auto index = static_cast<unsigned char>(character);
        reached = index < _withCharacter.size() ? possible & _withCharacter[index] : 0;
        possible = 0;
        for (Positions rest = reached; rest; rest &= rest - 1)
            possible |= _followers[std::countr_zero(rest)];
    }
    return (reached & _last) != 0;
}

} // namespace Mox::Host
