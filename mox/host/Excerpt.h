#pragma once

#include <string>
#include <string_view>

namespace Mox::Host {

/// The text on one line: control characters, which ids and names may hold, are blanks.
std::string ToOneLine(std::string text);

/// The beginning of a text in double quotes, fit for a message of one line: control characters are
/// blanks and a long rest is three dots. UTF-8 stays UTF-8.
std::string Excerpt(std::string_view text);

} // namespace Mox::Host
