#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Escaping of the user's text in the DOT language. The text appears in the diagram unchanged,
/// except that control characters and invalid UTF-8 become U+FFFD.

/// Formats the value of a tooltip attribute, in quotes. Line breaks are kept, as in EscapeTooltip.
std::string QuoteTooltip(std::string_view text);

/// Escapes text between the tags of an HTML-like label, as a single line.
std::string EscapeLabel(std::string_view text);

/// Escapes a tooltip for a quoted attribute of a tag in a label. Line breaks are kept.
std::string EscapeTooltip(std::string_view text);

/// Shortens text to at most maxLength characters, including an ellipsis if it is cut.
std::string Shorten(std::string_view text, std::size_t maxLength);

/// Wraps label text into left-aligned lines of at most lineLength characters, broken at spaces
/// where possible.
std::string WrapLabel(std::string_view text, std::size_t lineLength);

} // namespace Mox::Host
