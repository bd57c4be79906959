#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace Mox::Host {

/// A link between two nodes, by index: first comes before second.
using OrderLink = std::pair<std::size_t, std::size_t>;

/// An order of nodes that obeys links, or the way round a circle that prevents it.
struct GraphOrder
{
    std::vector<std::size_t> Order; ///< all nodes, or none if there is a circle
    std::vector<std::size_t> Cycle; ///< nodes of one circle, each before the next, or none
};

/// Orders nodeCount nodes so that each link's first comes before its second; apart from that the
/// nodes keep their order. Without recursion, in time proportional to nodes and links.
GraphOrder OrderNodes(std::size_t nodeCount, const std::vector<OrderLink>& links);

} // namespace Mox::Host
