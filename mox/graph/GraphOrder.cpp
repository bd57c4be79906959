#include "mox/graph/GraphOrder.h"

#include <algorithm>

namespace Mox::Host {

namespace {

/// The heads of each node's links, all in one array.
class Successors
{
public:
    Successors(std::size_t nodeCount, const std::vector<OrderLink>& links)
        : _begin(nodeCount + 1), _heads(links.size())
    {
        for (const auto& [tail, head] : links)
            ++_begin[tail + 1];
        for (std::size_t node = 0; node < nodeCount; ++node)
            _begin[node + 1] += _begin[node];
        std::vector<std::size_t> next(_begin.begin(), _begin.end() - 1);
        for (const auto& [tail, head] : links)
            _heads[next[tail]++] = head;
    }

    const std::size_t* Begin(std::size_t node) const { return _heads.data() + _begin[node]; }
    const std::size_t* End(std::size_t node) const { return _heads.data() + _begin[node + 1]; }

private:
    std::vector<std::size_t> _begin;
    std::vector<std::size_t> _heads;
};

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
    const Successors successors(nodeCount, links);
    std::vector<std::size_t> waitingFor(nodeCount);
    for (const auto& [tail, head] : links)
        ++waitingFor[head];

    GraphOrder result;
    result.Order.reserve(nodeCount);
    for (std::size_t node = 0; node < nodeCount; ++node) {
        if (waitingFor[node] == 0)
            result.Order.push_back(node);
    }
    for (std::size_t done = 0; done < result.Order.size(); ++done) {
        const std::size_t node = result.Order[done];
        for (const auto* head = successors.Begin(node); head != successors.End(node); ++head) {
            if (--waitingFor[*head] == 0)
                result.Order.push_back(*head);
        }
    }
    if (result.Order.size() < nodeCount) {
        result.Order.clear();
        result.Cycle = FindCycle(waitingFor, links);
    }
    return result;
}

} // namespace Mox::Host
