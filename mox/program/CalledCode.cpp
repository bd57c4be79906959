#include "mox/program/CalledCode.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace Mox::Host {

std::set<std::size_t> FindCalledCode(const std::vector<EnvironmentCode>& code,
                                     const std::vector<std::string_view>& bodies)
{
    std::unordered_set<std::string_view> words;
    const auto read = [&](std::string_view text) {
        ForEachWord(text, [&](std::string_view word, std::size_t) { words.insert(word); });
    };
    std::for_each(bodies.begin(), bodies.end(), read);
    std::set<std::size_t> called;
    for (bool isGrowing = true; isGrowing;) {
        isGrowing = false;
        for (std::size_t i = 0; i < code.size(); ++i) {
            const std::vector<std::string>& names = code[i].Provides;
            const auto isCalled = [&](const std::string& name) { return words.contains(name); };
            if (!std::any_of(names.begin(), names.end(), isCalled) || !called.insert(i).second)
                continue;
            isGrowing = true;
            read(code[i].Text);
        }
    }
    return called;
}

std::vector<EnvironmentCode>
FindHelperFunctions(const ShaderGraph& graph, const ShaderOrigins& origins, ProblemList& problems)
{
    std::vector<EnvironmentCode> helpers;
    std::unordered_map<std::string, const ShaderNode*> known;
    for (const ShaderNodeHandle& node : graph.Nodes) {
        if (node->Kind != ShaderNodeKind::Function || !node->Inputs.empty() ||
            !node->Outputs.empty())
            continue;
        const auto [entry, isNew] = known.emplace(node->Name, node.get());
        if (isNew) {
            helpers.push_back({{node->Name}, node->Code});
        } else if (entry->second->Code != node->Code) {
            problems.Fail("two-helpers", Place({}, 0, origins.Of(*node).Node),
                          Materials::Compose("the function ", Excerpt(node->Name),
                                             " is defined differently by node \"",
                                             origins.Of(*entry->second).Node, "\""));
        }
    }
    return helpers;
}

} // namespace Mox::Host
