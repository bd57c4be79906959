#include "mox/document/UnknownNode.h"

#include "mox/Text.h"
#include "mox/host/NearestName.h"

#include <set>
#include <string_view>
#include <vector>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::string_view beforeId = "there is no node \"";
constexpr std::string_view afterId = "\"";

} // namespace

std::string UnknownNode(const std::string& id)
{
    return Compose(beforeId, id, afterId);
}

std::string UnknownNode(const std::string& id, const MaterialDocument& document)
{
    constexpr std::size_t mostNodes = 1000;
    std::vector<RightName> names;
    if (document.Nodes.size() <= mostNodes) {
        std::set<std::string_view> listed{id}; // a node that the graph cannot show may have this id
        for (const DocumentNode& node : document.Nodes) {
            if (listed.insert(node.Id).second)
                names.push_back({node.Id});
        }
    }
    return UnknownNode(id) + SuggestName(id, names);
}

ProblemList WithSuggestions(const ProblemList& problems, const MaterialDocument& document)
{
    constexpr int mostSuggestions = 100;
    ProblemList result;
    int suggestions = 0;
    for (Problem problem : problems.Problems()) {
        if (problem.Rule == "unknown-node" && suggestions++ < mostSuggestions) {
            const std::size_t length = problem.Message.size() - beforeId.size() - afterId.size();
            problem.Message =
                UnknownNode(problem.Message.substr(beforeId.size(), length), document);
        }
        result.Add(problem);
    }
    return result;
}

} // namespace Mox::Host
