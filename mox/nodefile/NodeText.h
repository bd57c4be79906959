#pragma once

#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFile.h"

#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Conditions such as "Function=Sine, Cosine; Alpha=true": between semicolons one property each,
/// with the values of which it must have one.
/// @throws HostError at the place if the text has another form
NodeConditions ParseNodeConditions(std::string_view text, const Place& where);

/// Something in Cg that is opened and not closed, or the other way round.
struct OpenCode
{
    int Line; ///< in the text, from 0
    std::string Message;
};

/// What would let code take effect beyond the braces, or the declaration, that it is written into:
/// a comment, a bracket or brace that does not end in it. Preprocessor lines are not allowed
/// either.
/// @param isExpression then neither a semicolon nor a comment may be there
std::optional<OpenCode> FindOpenCode(std::string_view code, bool isExpression);

/// The lines of a text, from the first that is not empty to the last, with an indentation of their
/// own in place of the one that they share.
std::string TakeLines(std::string_view text, std::string_view indentation);

/// The words of a text with a single space between them.
std::string TakeWords(std::string_view text);

} // namespace Mox::Host
