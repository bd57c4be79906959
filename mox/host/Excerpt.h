#pragma once

#include <string>
#include <string_view>

namespace Mox::Host {

/// The beginning of a text in double quotes, fit for a message of one line: control characters,
/// among them those that change the direction of writing, are replaced by spaces and a long rest by
/// three dots. UTF-8 stays UTF-8.
std::string Excerpt(std::string_view text);

/// A message that is printed as one line, whatever names and texts of documents and plug-ins it
/// contains: control characters are replaced as in Excerpt, and what follows after some thousand
/// bytes is replaced by three dots.
std::string MessageLine(std::string_view message);

/// Whether XML, and with it a document, can hold a text: it is UTF-8 and has no control characters
/// other than tabs and line ends.
bool IsXmlText(std::string_view text);

} // namespace Mox::Host
