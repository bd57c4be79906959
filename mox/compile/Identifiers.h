#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The text with each identifier replaced by what rename makes of it. Numbers such as "1e5" and
/// "0x1f" hold no identifiers. rename is also told whether a dot stands before the identifier, so
/// that it can leave a swizzle alone.
std::string
RenameIdentifiers(std::string_view text,
                  const std::function<std::string(std::string_view name, bool afterDot)>& rename);

/// The identifiers of the text, except those behind a dot and attributes such as "[[position]]".
std::set<std::string, std::less<>> CollectIdentifiers(std::string_view text);

} // namespace Mox::Host
