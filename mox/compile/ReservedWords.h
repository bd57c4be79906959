#pragma once

#include "mox/compile/CompileTarget.h"

#include <string_view>

namespace Mox::Host {

/// Whether a language forbids the identifier as a name of a program's own, for being a word or a
/// type of the language or of a form that it keeps for itself. Functions of the language count only
/// where the language says so: where a text calls one, its name is not free for that reason.
bool IsReservedName(std::string_view name, CompileTarget target);

} // namespace Mox::Host
