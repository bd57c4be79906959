#pragma once

#include <string_view>

namespace Mox::Host {

/// A language that programs can be written in.
enum class ProgramLanguage
{
    Cg,
    Hlsl, ///< shader model 5.0
    Glsl, ///< 4.50
    Essl, ///< 3.00
    Msl,  ///< 2.0
};

/// Whether a program cannot use an identifier as a name because it is a keyword or type of the
/// language, or has a form that the language reserves. For Cg and ESSL, the built-in functions are
/// included; in the other languages, only a program that calls a function must avoid its name.
bool IsReservedWord(std::string_view name, ProgramLanguage language);

} // namespace Mox::Host
