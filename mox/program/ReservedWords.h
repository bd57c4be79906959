#pragma once

#include <string_view>

namespace Mox::Host {

/// A language that programs are written in.
enum class ProgramLanguage
{
    Cg,
    Hlsl, ///< shader model 5.0
    Glsl, ///< 4.50
    Essl, ///< 3.00
    Msl,  ///< 2.0
};

/// Whether a language forbids the identifier as a name of a program's own, because it is a keyword
/// or a type, or has a form that the language keeps for itself. In Cg and ESSL that includes the
/// language's functions; elsewhere a program that calls one must not use its name.
bool IsReservedWord(std::string_view name, ProgramLanguage language);

} // namespace Mox::Host
