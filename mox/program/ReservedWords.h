#pragma once

#include <string_view>

namespace Mox::Host {

/// Whether a Cg program cannot use an identifier as a name because it is a keyword, type or
/// built-in function of Cg, or has a form that Cg reserves. The writer of each other language
/// renames what only that language reserves.
bool IsReservedWord(std::string_view name);

} // namespace Mox::Host
