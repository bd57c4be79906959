#include "mox/graph/GraphOrder.h"

#include <algorithm>

namespace Mox::Host {

namespace {

/// Every node that waits has a predecessor that waits too, so walking backwards must come round.
std::vector<std::size_t> FindCycle(const std::vector<std::size_t>& waitingFor,
                                   const std::vector<OrderLink>& links)
{
    constexpr auto none = static_cast<std::size_t>(-1);
    std::vector<std::size_t> predecessor(waitingFor.size(), none);
    for (const auto& [tail, head] : links) {
        if (waitingFor[tail] > 0 && waitingFor[head] > 0)
            predecessor[head] = tail;
    }
    std::size_t node = 0;
    while (waitingFor[node] == 0)
        ++node;
    std::vector<std::size_t> stepOf(waitingFor.size(), none);
    std::vector<std::size_t> walk;
    while (stepOf[node] == none) {
        stepOf[node] = walk.size();
        walk.push_back(node);
        node = predecessor[node];
    }
    walk.erase(walk.begin(), walk.begin() + static_cast<std::ptrdiff_t>(stepOf[node]));
    std::reverse(walk.begin(), walk.end());
    return walk;
}

} // namespace

GraphOrder OrderNodes(std::size_t nodeCount, const std::vector<OrderLink>& links)
{
    std::vector<std::vector<std::size_t>> heads(nodeCount);
    std::vector<std::size_t> waitingFor(nodeCount);
    for (const auto& [tail, head] : links) {
        heads[tail].push_back(head);
        ++waitingFor[head];
    }

    GraphOrder result;
    for (std::size_t node = 0; node < nodeCount; ++node) {
        if (waitingFor[node] == 0)
            result.Order.push_back(node);
    }
    for (std::size_t done = 0; done < result.Order.size(); ++done) {
        for (const std::size_t head : heads[result.Order[done]]) {
            if (--waitingFor[head] == 0)
                result.Order.push_back(head);
        }
    }
    if (result.Order.size() < nodeCount) {
        result.Order.clear();
        result.Cycle = FindCycle(waitingFor, links);
    }
    return result;
}

} // namespace Mox::Host
