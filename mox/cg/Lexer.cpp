#include "mox/cg/Lexer.h"

#include "mox/Identifier.h"
#include "mox/Text.h"

#include <algorithm>

namespace Mox::Cg {

namespace {

using Materials::Compose;

bool IsOneOf(char c, std::string_view characters)
{
    return characters.find(c) != std::string_view::npos;
}

/// Returns the length of the operator or bracket at the start of a string, or 0 if there is none.
std::size_t SymbolLength(std::string_view text)
{
    const char first = text[0];
    const char second = text.size() > 1 ? text[1] : '\0';
    if (!IsOneOf(first, "+-*/%<>=!&|^?:;,.()[]{}~"))
        return 0;
    const bool isDouble = (second == '=' && IsOneOf(first, "+-*/%<>=!&|^")) ||
                          (second == first && IsOneOf(first, "+-<>&|"));
    return isDouble ? 2 : 1;
}

} // namespace

std::string Quote(std::string_view text)
{
    constexpr std::size_t longest = 60;
    std::string quoted = "\"";
    for (const char c : text.substr(0, longest))
        quoted += static_cast<unsigned char>(c) < ' ' ? '?' : c;
    return quoted + (text.size() > longest ? "...\"" : "\"");
}

Token Lexer::Next()
{
    SkipSpace();
    Token token;
    token.Where = _where;
    if (_commentEnd == _where.Line)
        token.Comment = _comment;
    _commentEnd = 0; // the comment belongs only to the first token that follows it
    if (_rest.empty())
        return token;
    std::size_t length = 1;
    if (IsIdentifierStart(_rest[0])) {
        token.Kind = TokenKind::Word;
        length = static_cast<std::size_t>(
            std::find_if_not(_rest.begin(), _rest.end(), IsIdentifierPart) - _rest.begin());
    } else if (IsDigit(_rest[0]) || (_rest[0] == '.' && _rest.size() > 1 && IsDigit(_rest[1]))) {
        token.Kind = TokenKind::Number;
        length = NumberLength();
    } else {
        token.Kind = TokenKind::Symbol;
        length = SymbolLength(_rest);
        if (length == 0)
            throw Failure(_where,
                          _rest[0] == '#'
                              ? std::string("preprocessor directives are not supported")
                              : Compose("unexpected character ", Quote(_rest.substr(0, 1))));
    }
    token.Text = _rest.substr(0, length);
    Advance(length);
    _tokenLine = _where.Line;
    return token;
}

void Lexer::SkipSpace()
{
    while (!_rest.empty()) {
        if (_rest.starts_with("//"))
            SkipComment("\n");
        else if (_rest.starts_with("/*"))
            SkipComment("*/");
        else if (_rest[0] == ' ' || (_rest[0] >= '\t' && _rest[0] <= '\r'))
            Advance(1);
        else
            return;
    }
}

void Lexer::SkipComment(std::string_view end)
{
    const int line = _where.Line;
    const std::string_view before = _rest;
    const std::size_t at = _rest.find(end, 2);
    const bool isLine = end == "\n";
    if (at == std::string_view::npos && !isLine)
        throw Failure(_where, "unterminated comment");
    Advance(std::min(_rest.size(), at + (isLine ? 0 : end.size())));
    if (line == _tokenLine)
        return; // a comment on the same line as a token does not belong to the next token
    const std::string_view comment = before.substr(0, before.size() - _rest.size());
    // Comments on consecutive lines are joined.
    const bool isNextLine = !_comment.empty() && _commentEnd == line;
    const char* begin = isNextLine ? _comment.data() : comment.data();
    _comment = {begin, static_cast<std::size_t>(comment.data() + comment.size() - begin)};
    _commentEnd = _where.Line + 1;
}

/// Returns the length of the number at the current position. A dot before a letter is not part of
/// it, unless the letter is: "2.xxx" is a swizzle of 2, but "2.f" and "2.e3" are numbers.
std::size_t Lexer::NumberLength() const
{
    std::size_t at = 0;
    const auto peek = [&](std::size_t i) { return i < _rest.size() ? _rest[i] : '\0'; };
    const auto skipDigits = [&] {
        while (IsDigit(peek(at)))
            ++at;
    };
    const auto exponentEnd = [&](std::size_t i) {
        if (peek(i) != 'e' && peek(i) != 'E')
            return i;
        std::size_t digit = i + 1;
        if (peek(digit) == '+' || peek(digit) == '-')
            ++digit;
        if (!IsDigit(peek(digit)))
            return i;
        while (IsDigit(peek(digit)))
            ++digit;
        return digit;
    };
    const auto suffixEnd = [&](std::size_t i) {
        const bool isSuffix =
            peek(i) != '\0' && std::string_view("fFhHxX").find(peek(i)) != std::string_view::npos;
        return isSuffix && !IsIdentifierPart(peek(i + 1)) ? i + 1 : i;
    };
    if (peek(0) == '0' && (peek(1) == 'x' || peek(1) == 'X') && IsIdentifierPart(peek(2))) {
        at = 2;
        while (IsIdentifierPart(peek(at)))
            ++at;
        return at;
    }
    skipDigits();
    if (peek(at) == '.') {
        const std::size_t end = at + 1;
        if (IsDigit(peek(end)) || !IsIdentifierStart(peek(end)) ||
            suffixEnd(exponentEnd(end)) > end) {
            ++at;
            skipDigits();
        }
    }
    return suffixEnd(exponentEnd(at));
}

void Lexer::Advance(std::size_t count)
{
    for (const char c : _rest.substr(0, count)) {
        ++_where.Column;
        if (c == '\n') {
            ++_where.Line;
            _where.Column = 1;
        }
    }
    _rest.remove_prefix(count);
}

} // namespace Mox::Cg
