#pragma once

#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFile.h"

#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Parses conditions such as "Function=Sine, Cosine; Alpha=true": properties separated by
/// semicolons, each with the values that it may have.
/// @throws HostError at the place if the syntax is invalid
NodeConditions ParseNodeConditions(std::string_view text, const Place& where);

/// An unmatched opening or closing token in Cg code.
struct OpenCode
{
    int Line; ///< line within the code, from 0
    std::string Message;
};

/// Finds anything that would let code affect the code around it: a comment, bracket or brace that
/// is not closed, or not opened, within it. Preprocessor lines are also rejected.
/// @param isExpression also rejects semicolons and comments
std::optional<OpenCode> FindOpenCode(std::string_view code, bool isExpression);

/// Returns the lines of a text from the first to the last one that is not empty, with their common
/// indentation replaced.
std::string TakeLines(std::string_view text, std::string_view indentation);

/// Returns the words of a text, separated by single spaces.
std::string TakeWords(std::string_view text);

} // namespace Mox::Host
