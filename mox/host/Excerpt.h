#pragma once

#include <string>
#include <string_view>

namespace Mox::Host {

/// The beginning of a text in double quotes, fit for a message of one line: control characters are
/// blanks and a long rest is three dots. UTF-8 stays UTF-8.
std::string Excerpt(std::string_view text);

/// A message that is printed as one line, whatever names and texts of documents and plug-ins stand
/// in it: control characters are blanks, and what comes behind some thousand bytes is three dots.
std::string MessageLine(std::string_view message);

} // namespace Mox::Host
