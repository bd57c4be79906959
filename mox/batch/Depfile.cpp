#include "mox/batch/Depfile.h"

#include "mox/host/File.h"

#include <algorithm>
#include <string_view>

namespace Mox::Host {

namespace {

using std::filesystem::path;

/// A name without a leading "./", which both programs strip.
std::string_view WithoutDot(std::string_view name)
{
    while (name.starts_with("./"))
        name = name.substr(std::min(name.find_first_not_of('/', 1), name.size()));
    return name;
}

/// Whether both programs treat a character the same way. Ninja ends a name at most of the refused
/// characters, escaped or not, and Make gives the others a meaning of its own.
bool IsCommon(char c)
{
    constexpr std::string_view refused = "\"%&'*;<=>?[^`|\x7f";
    const auto byte = static_cast<unsigned char>(c);
    return byte >= ' ' && refused.find(c) == std::string_view::npos;
}

/// Make recognises targets such as .PHONY by name.
bool IsSpecialTarget(std::string_view name)
{
    return name.size() > 1 && name[0] == '.' && name[1] >= 'A' && name[1] <= 'Z' &&
           name.find('/') == std::string_view::npos;
}

/// Whether the last character has no special meaning. Others could be mistaken for an escape, a
/// space between names, the end of a target, or an archive member.
bool HasCommonEnd(std::string_view name)
{
    return !name.empty() && std::string_view("\\ :)").find(name.back()) == std::string_view::npos;
}

/// Whether all backslashes are read literally. The two programs count backslashes differently
/// before characters that are themselves escaped with a backslash.
bool HasCommonBackslashes(std::string_view name)
{
    for (const std::string_view pair : {"\\#", "\\:", "\\$"}) {
        if (name.find(pair) != std::string_view::npos)
            return false;
    }
    return true;
}

/// Escapes a name for use in a rule: a backslash before spaces and special characters, twice as
/// many backslashes before a space, and two dollar signs for one.
std::string Escape(const path& name)
{
    std::string text;
    std::size_t backslashes = 0;
    for (const char c : name.native()) {
        if (c == ' ')
            text.append(backslashes + 1, '\\');
        else if (c == '#' || c == ':')
            text += '\\';
        else if (c == '$')
            text += '$';
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text;
}

void WarnOfName(const path& name, ProblemList& problems)
{
    problems.Warn("dependency-file", name.string(),
                  "is left out of the dependency file, because Make and Ninja interpret this name "
                  "differently");
}

} // namespace

bool IsDepfileName(const path& file)
{
    const std::string_view name = WithoutDot(file.native());
    return std::all_of(name.begin(), name.end(), IsCommon) && HasCommonEnd(name) &&
           HasCommonBackslashes(name) && !name.starts_with('~') && !IsSpecialTarget(name);
}

void Depfile::Add(const std::vector<path>& outputs, const std::vector<path>& inputs,
                  ProblemList& problems)
{
    std::string targets;
    const path* leftOut = nullptr;
    for (const path& output : outputs) {
        RequireOther(output);
        if (IsDepfileName(output))
            targets += (targets.empty() ? "" : " ") + Escape(output);
        else if (!leftOut)
            leftOut = &output;
    }
    if (leftOut) // the other outputs differ from it only in their extensions
        WarnOfName(*leftOut, problems);
    std::string prerequisites;
    std::string emptyRules;
    for (const path& input : inputs) {
        const bool isNew = !_inputs.contains(input.native());
        if (isNew)
            RequireOther(input);
        if (targets.empty())
            continue;
        _inputs.insert(input.native());
        if (IsDepfileName(input)) {
            const std::string escaped = Escape(input);
            prerequisites += " \\\n  " + escaped;
            emptyRules += isNew ? escaped + ":\n" : "";
        } else if (isNew) {
            WarnOfName(input, problems);
        }
    }
    if (!targets.empty())
        Write(targets + ":" + prerequisites + "\n" + emptyRules);
}

void Depfile::Commit()
{
    if (_failure)
        throw HostError(*_failure);
    _file->Commit();
}

void Depfile::Write(const std::string& rules)
{
    if (_failure)
        return;
    try {
        _file->Write(rules);
    } catch (const HostError& error) {
        Fail(error);
    }
}

/// The outputs have been written by now, so their names resolve to files.
void Depfile::RequireOther(const path& named)
{
    if (IsSameFile(named, _name)) {
        Fail({_name.string(), "is an input or output of the export, so it is not overwritten"});
    }
}

/// Only the first failure counts. The partial file is removed immediately, which helps when a disk
/// is full.
void Depfile::Fail(const HostError& error)
{
    if (!_failure)
        _failure = error;
    _file.reset();
}

} // namespace Mox::Host
