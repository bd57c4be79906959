#pragma once

#include "mox/compile/CompileTarget.h"
#include "mox/program/CgProgram.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Mox::Host {

/// A program in a target language, with the names that its parameters have there.
struct NamedText
{
    std::string Text;
    std::vector<std::string> Names; ///< by parameter; empty for one that the text does not read
};

/// Carries the names of a program's parameters round the compilers. On the way every parameter has
/// an alias that no language minds, so a parameter may be called as it likes; at the end it gets
/// its own name back, or one close to it where the language forbids that.
class ParameterNames
{
public:
    /// @param parameters must outlive the object
    explicit ParameterNames(const std::vector<ProgramParameter>& parameters);

    /// The alias of a parameter.
    const std::string& GetAlias(std::size_t parameter) const { return _aliases[parameter]; }

    /// What SPIR-V and the reflection call a parameter. A binding has its own name, and so has a
    /// value of the environment unless a binding has it too.
    const std::string& GetReflectedName(std::size_t parameter) const
    {
        return _reflected[parameter];
    }

    const std::vector<ProgramParameter>& Parameters() const { return _parameters; }

    /// The parameter of an alias, if it is one.
    std::optional<std::size_t> Find(const std::string& alias) const;

    /// The parameter of an alias.
    /// @throws std::logic_error if it is no alias: the text declares what is no parameter
    std::size_t Get(const std::string& alias) const;

    /// A Cg text with aliases for its parameters. Lines stay lines.
    std::string HideNames(const std::string& cgText) const;

    /// The other way round, for messages of a compiler.
    std::string ShowCgNames(const std::string& text) const;

    /// A target's text with the parameters' names for the aliases. A name that the language
    /// reserves or that the text uses for something else becomes the next free one close to it.
    NamedText ShowNames(const std::string& text, CompileTarget target) const;

private:
    const std::vector<ProgramParameter>& _parameters;
    std::vector<std::string> _aliases;
    std::vector<std::string> _reflected;
    std::map<std::string, std::size_t, std::less<>> _byAlias;
    std::map<std::string, std::size_t, std::less<>> _byCgName;
};

} // namespace Mox::Host
