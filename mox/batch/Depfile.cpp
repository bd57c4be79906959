#include "mox/batch/Depfile.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <string_view>

namespace Mox::Host {

namespace {

/// A name as a rule spells it, which both Make and Ninja read back: backslashes before blanks and
/// signs with a meaning, those that lead up to one doubled, and two dollars for one.
std::string Escape(const std::filesystem::path& name)
{
    std::string text;
    std::size_t backslashes = 0;
    for (const char c : name.native()) {
        if (c == '\n' || c == '\r') {
            throw HostError({name.string(), 0, {}, {}},
                            "a name with a line break cannot stand in a dependency file");
        }
        if (c == ' ' || c == '\t')
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

} // namespace

void Depfile::Add(const std::vector<std::filesystem::path>& outputs,
                  const std::vector<std::filesystem::path>& inputs)
{
    std::string rule;
    for (const auto& output : outputs)
        rule += (rule.empty() ? "" : " ") + Escape(output);
    rule += ":";
    std::string emptyRules;
    for (const auto& path : inputs) {
        const std::string input = Escape(path);
        rule += " \\\n  " + input;
        if (_emptyRules.insert(input).second)
            emptyRules += input + ":\n";
    }
    _file.Write(rule + "\n" + emptyRules);
}

} // namespace Mox::Host
