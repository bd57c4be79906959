#pragma once

#include <string>
#include <string_view>

namespace Mox::Host {

/// Returns the beginning of a string in double quotes for a one-line message: control characters,
/// including those that change the text direction, are replaced by spaces, and the end of a long
/// string is replaced by "...". UTF-8 is preserved.
std::string Excerpt(std::string_view text);

/// Formats a message as a single line, even if it contains arbitrary strings from documents and
/// plug-ins: control characters are replaced as in Excerpt, and the end of a message of more than a
/// few thousand bytes is replaced by "...".
std::string MessageLine(std::string_view message);

/// Returns whether XML, and therefore a document, can contain a string: it must be UTF-8 without
/// control characters other than tabs and line breaks.
bool IsXmlText(std::string_view text);

} // namespace Mox::Host
