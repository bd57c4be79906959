#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Text of users inside the DOT language. Whatever the text holds, it is shown as it stands, but
/// for what no picture can show: control characters and bytes that are no UTF-8 become U+FFFD.

/// The value of a tooltip attribute, in quotes; line ends stay line ends, as in EscapeTooltip.
std::string QuoteTooltip(std::string_view text);

/// For text between the tags of an HTML-like label, as one line.
std::string EscapeLabel(std::string_view text);

/// For the tooltip of a tag in a label, between quotes.
std::string EscapeTooltip(std::string_view text);

/// At most maxLength characters; what is longer ends in an ellipsis.
std::string Shorten(std::string_view text, std::size_t maxLength);

/// Label text in lines of at most lineLength characters, which start at the left and break at
/// blanks where they can.
std::string WrapLabel(std::string_view text, std::size_t lineLength);

} // namespace Mox::Host
