#include "mox/program/HelperFunctions.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <unordered_map>

namespace Mox::Host {

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
                                             " is defined otherwise by node \"",
                                             origins.Of(*entry->second).Node, "\""));
        }
    }
    return helpers;
}

} // namespace Mox::Host
