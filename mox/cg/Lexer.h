#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Mox::Cg {

/// A position in a source. Lines and columns count from 1; columns count bytes, and a tab is one.
struct Position
{
    int Line = 1;
    int Column = 1;
};

/// Aborts reading a source. Never thrown outside this folder: ReadModule returns errors as values.
struct Failure : std::runtime_error
{
    Failure(Position where, const std::string& message) : std::runtime_error(message), Where(where)
    {}

    Position Where;
};

enum class TokenKind : std::uint8_t
{
    Word,
    Number, ///< begins with a digit, or with a dot followed by a digit
    Symbol, ///< an operator or a bracket
    End,
};

struct Token
{
    TokenKind Kind = TokenKind::End;
    std::string_view Text;
    Position Where;
    std::string_view Comment; ///< lines with nothing but a comment directly above, without their
                              ///< indentation
};

/// Splits a source into tokens. The source is empty at first.
class Lexer
{
public:
    /// Continues with the next part of the source, which follows directly after the previous one.
    /// @param text must outlive all tokens
    void Append(std::string_view text) { _rest = text; }

    /// Returns the next token; at the end of the source, always a token of kind End.
    /// @throws Failure at characters that are not part of the language
    Token Next();

private:
    void SkipSpace();
    void SkipComment(std::string_view end);
    std::size_t NumberLength() const;
    void Advance(std::size_t count);

    std::string_view _rest;
    Position _where;
    std::string_view _comment;
    int _commentEnd = 0; ///< line after the comment
    int _tokenLine = 0;  ///< line of the last token
};

/// Quotes an excerpt of a source for a message, without control characters.
std::string Quote(std::string_view text);

} // namespace Mox::Cg
