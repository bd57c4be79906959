#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Mox::Cg {

/// A place in a source. Lines and columns count from 1, columns in bytes, a tab as one.
struct Position
{
    int Line = 1;
    int Column = 1;
};

/// Ends the reading of a source. It never leaves this room: ReadModule returns errors as values.
struct Failure : std::runtime_error
{
    Failure(Position where, const std::string& message) : std::runtime_error(message), Where(where)
    {}

    Position Where;
};

enum class TokenKind : std::uint8_t
{
    Word,
    Number, ///< begins with a digit, or with a dot and a digit
    Symbol, ///< an operator or a bracket
    End,
};

struct Token
{
    TokenKind Kind = TokenKind::End;
    std::string_view Text;
    Position Where;
    std::string_view Comment; ///< whole lines of comment directly above, without their indentation
};

/// Splits a source into tokens. It has none at first.
class Lexer
{
public:
    /// Goes on with a text, which begins where the one before it ended.
    /// @param text must outlive all tokens
    void Append(std::string_view text) { _rest = text; }

    /// The next token; at the end of the source always one of the kind End.
    /// @throws Failure at what is no part of the language
    Token Next();

private:
    void SkipSpace();
    void SkipComment(std::string_view end);
    std::size_t NumberLength() const;
    void Advance(std::size_t count);

    std::string_view _rest;
    Position _where;
    std::string_view _comment;
    int _commentEnd = 0; ///< line after that comment
    int _tokenLine = 0;  ///< of the last token
};

/// A piece of a source for a message, in double quotes and without control characters.
std::string Quote(std::string_view text);

} // namespace Mox::Cg
