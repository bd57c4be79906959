#include "mox/interchange/Formula.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/HostError.h"

namespace Mox::Host {

namespace {

class FormulaParser
{
public:
    explicit FormulaParser(std::string_view text) : _text(text) {}

    Formula Parse()
    {
        Formula formula;
        do {
            Formula::Step& step = formula.Steps.emplace_back();
            step.Value = ParseExpression(0);
            if (Take('=')) {
                step.Name = step.Value.Name;
                step.Value = ParseExpression(0);
            }
        } while (Take(';'));
        if (_position != _text.size())
            Refuse();
        return formula;
    }

private:
    Expression ParseExpression(int depth)
    {
        if (depth > 32)
            Refuse();
        Expression expression;
        if (Take('[')) {
            do
                expression.Numbers.push_back(ParseNumber());
            while (Take(','));
            Expect(']');
            return expression;
        }
        SkipSpaces();
        if (_position < _text.size() && !IsIdentifierStart(_text[_position])) {
            expression.Numbers.push_back(ParseNumber());
            return expression;
        }
        expression.Name = Word();
        expression.IsCall = Take('(');
        if (!expression.IsCall || Take(')'))
            return expression;
        do
            expression.Arguments.push_back(ParseExpression(depth + 1));
        while (Take(','));
        Expect(')');
        return expression;
    }

    float ParseNumber()
    {
        const auto number = ParseFloat(Word());
        if (!number)
            Refuse();
        return *number;
    }

    std::string Word()
    {
        SkipSpaces();
        const std::size_t end = _text.find_first_of(" ,;=()[]", _position);
        const std::string word(_text.substr(_position, end - _position));
        if (word.empty())
            Refuse();
        _position += word.size();
        return word;
    }

    void SkipSpaces()
    {
        while (_position < _text.size() && _text[_position] == ' ')
            ++_position;
    }

    bool Take(char sign)
    {
        SkipSpaces();
        const bool isThere = _position < _text.size() && _text[_position] == sign;
        _position += isThere ? 1 : 0;
        return isThere;
    }

    void Expect(char sign)
    {
        if (!Take(sign))
            Refuse();
    }

    [[noreturn]] void Refuse() const
    {
        throw HostError({}, Materials::Compose("invalid formula at character ", _position, ": ",
                                               std::string(_text)));
    }

    std::string_view _text;
    std::size_t _position = 0;
};

} // namespace

Formula ParseFormula(std::string_view text)
{
    return FormulaParser(text).Parse();
}

} // namespace Mox::Host
