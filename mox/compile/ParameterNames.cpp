#include "mox/compile/ParameterNames.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/compile/Identifiers.h"
#include "mox/program/ReservedWords.h"

#include <stdexcept>
#include <utility>

namespace Mox::Host {

using Materials::Compose;

namespace {

using NameSet = std::set<std::string, std::less<>>;

/// What SPIRV-Cross puts before or behind an alias for the things that it makes of one parameter.
struct AliasForm
{
    std::string_view Prefix;
    std::string_view Suffix;
    std::string_view FinalSuffix;
};

constexpr AliasForm plain{"", "", ""};
constexpr AliasForm hlslMember{"mox_", "", ""};
constexpr AliasForm hlslSampler{"_", "_sampler", "Sampler"};
constexpr AliasForm mslSampler{"", "Sampler", "Sampler"};

ProgramLanguage LanguageOf(CompileTarget target)
{
    switch (target) {
    case CompileTarget::Hlsl:
        return ProgramLanguage::Hlsl;
    case CompileTarget::Essl:
        return ProgramLanguage::Essl;
    case CompileTarget::Msl:
        return ProgramLanguage::Msl;
    default:
        return ProgramLanguage::Glsl;
    }
}

std::vector<AliasForm> FormsOf(CompileTarget target)
{
    switch (target) {
    case CompileTarget::Hlsl:
        return {plain, hlslMember, hlslSampler};
    case CompileTarget::Msl:
        return {plain, mslSampler};
    default:
        return {plain};
    }
}

/// Takes double underscores and a reserved beginning out of a name.
std::string WithoutReservedParts(std::string name)
{
    for (std::size_t at; (at = name.find("__")) != std::string::npos;)
        name.erase(at, 1);
    if (name.starts_with("gl_"))
        name.insert(0, 1, '_');
    return name;
}

/// The name itself or the first of name_, name_2, name_3, ... that is free in the language, alone
/// and with the suffix.
std::string FindFreeName(const std::string& name, std::string_view suffix, CompileTarget target,
                         const NameSet& taken)
{
    const auto isFree = [&](const std::string& candidate) {
        return !IsReservedWord(candidate, LanguageOf(target)) && !taken.contains(candidate) &&
               (suffix.empty() || !taken.contains(Compose(candidate, suffix)));
    };
    if (isFree(name))
        return name;
    const std::string base = WithoutReservedParts(name);
    std::string candidate = base;
    for (int number = 1; !isFree(candidate); ++number)
        candidate = WithoutReservedParts(number == 1 ? base + "_" : Compose(base, "_", number));
    return candidate;
}

} // namespace

ParameterNames::ParameterNames(const std::vector<ProgramParameter>& parameters)
    : _parameters(parameters)
{
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        _aliases.push_back(Compose("MoxParameter", i));
        _byAlias[_aliases[i]] = i;
        _byCgName[parameters[i].CgName] = i;
    }
    std::set<std::string> taken;
    std::set<std::string> ofBindings;
    for (const ProgramParameter& parameter : parameters) {
        taken.insert(parameter.Name);
        if (parameter.IsBinding)
            ofBindings.insert(parameter.Name);
    }
    for (const ProgramParameter& parameter : parameters) {
        std::string name = parameter.Name;
        if (!parameter.IsBinding && ofBindings.contains(name)) {
            for (int number = 2; !taken.insert(name).second; ++number)
                name = Compose(parameter.Name, "_", number);
        }
        _reflected.push_back(std::move(name));
    }
}

std::optional<std::size_t> ParameterNames::Find(const std::string& alias) const
{
    const auto found = _byAlias.find(alias);
    return found == _byAlias.end() ? std::nullopt : std::optional(found->second);
}

std::size_t ParameterNames::Get(const std::string& alias) const
{
    const std::optional<std::size_t> parameter = Find(alias);
    if (!parameter)
        throw std::logic_error(Compose("\"", alias, "\" is no parameter of the program"));
    return *parameter;
}

std::string ParameterNames::HideNames(const std::string& cgText) const
{
    return RenameIdentifiers(cgText, [&](std::string_view name, bool afterDot) {
        const auto found = _byCgName.find(name);
        return afterDot || found == _byCgName.end() ? std::string(name) : _aliases[found->second];
    });
}

std::string ParameterNames::ShowCgNames(const std::string& text) const
{
    return RenameIdentifiers(text, [&](std::string_view name, bool) {
        const auto found = _byAlias.find(name);
        return found == _byAlias.end() ? std::string(name) : _parameters[found->second].CgName;
    });
}

NamedText ParameterNames::ShowNames(const std::string& text, CompileTarget target) const
{
    const std::vector<AliasForm> forms = FormsOf(target);
    NameSet taken = CollectIdentifiers(text);
    std::map<std::string, std::string, std::less<>> finalNames;
    NamedText result;
    result.Names.resize(_parameters.size());
    for (std::size_t i = 0; i < _parameters.size(); ++i) {
        const ProgramParameter& parameter = _parameters[i];
        const std::string_view suffix =
            parameter.Kind == ParameterKind::Sampler ? forms.back().FinalSuffix : "";
        const std::string name =
            FindFreeName(IsIdentifier(parameter.Name) ? parameter.Name : parameter.CgName, suffix,
                         target, taken);
        taken.insert(name);
        taken.insert(Compose(name, suffix));
        for (const AliasForm& form : forms)
            finalNames[Compose(form.Prefix, _aliases[i], form.Suffix)] =
                Compose(name, form.FinalSuffix);
        result.Names[i] = name;
    }
    NameSet seen;
    result.Text = RenameIdentifiers(text, [&](std::string_view name, bool) {
        const auto found = finalNames.find(name);
        if (found == finalNames.end())
            return std::string(name);
        seen.insert(found->second);
        return found->second;
    });
    for (std::string& name : result.Names) {
        if (!seen.contains(name))
            name.clear();
    }
    return result;
}

} // namespace Mox::Host
