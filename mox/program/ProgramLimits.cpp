#include "mox/program/ProgramLimits.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <string_view>
#include <unordered_set>

namespace Mox::Host {

namespace {

using Materials::Compose;

void CheckName(const std::string& name, const Place& where, ProblemList& problems)
{
    constexpr std::size_t longest = 1000;
    if (name.size() > longest) {
        problems.Fail("name-too-long", where,
                      Compose("the name ", Excerpt(name), " has ", name.size(),
                              " characters, but programs accept at most ", longest));
    }
}

/// Whether a body uses a word without having a variable or parameter of that name. A word that
/// follows a type counts as a declaration.
bool IsUndeclared(const ShaderNode& function, std::string_view wanted)
{
    const std::string name(wanted);
    if (function.FindInputPort(name) >= 0 || function.FindOutputPort(name) >= 0)
        return false;
    const std::string_view code = function.Code;
    bool isUsed = false;
    bool isDeclared = false;
    ForEachWord(code, [&](std::string_view word, std::size_t at) {
        if (word != wanted)
            return;
        isUsed = true;
        const std::size_t before = code.substr(0, at).find_last_not_of(" \t\n");
        isDeclared |= before != std::string_view::npos && IsIdentifierPart(code[before]);
    });
    return isUsed && !isDeclared;
}

/// Reports numbers that are not finite: they are written as words that Cg does not define.
void CheckNumbers(const ShaderNode& function, const Place& where, ProblemList& problems)
{
    for (const std::string_view word : {"inf", "nan"}) {
        if (!IsUndeclared(function, word))
            continue;
        problems.Fail("not-finite", where,
                      Compose("the program would contain \"", word, "\", which is not a number"));
        return;
    }
}

} // namespace

void CheckProgramLimits(const ProgramGraph& graph, ProblemList& problems)
{
    std::unordered_set<const ShaderNode*> checked;
    for (std::size_t node = 0; node < graph.Nodes().size(); ++node) {
        const ShaderNode& definition = *graph.Nodes()[node].Definition;
        const Place where = PlaceOf(*graph.Nodes()[node].Origin);
        CheckName(NameOf(graph.Nodes()[node]), where, problems);
        for (std::size_t port = 0; port < definition.Outputs.size(); ++port)
            CheckName(graph.NameOf({node, port}), where, problems);
        if (!checked.insert(&definition).second)
            continue; // already checked
        for (const ShaderPort& port : definition.Inputs)
            CheckName(port.Name, where, problems);
        CheckNumbers(definition, where, problems);
    }
}

} // namespace Mox::Host
