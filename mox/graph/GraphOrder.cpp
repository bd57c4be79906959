#include "mox/graph/GraphOrder.h"

#include <algorithm>
#include <unordered_map>

namespace Mox::Host {

namespace {

/// Finds a cycle. Each waiting node has a waiting predecessor, so a backward walk must reach a
/// cycle.
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

/// Reserves memory for one more element, with geometric growth.
void ReserveOneMore(std::vector<std::size_t>& list)
{
    if (list.size() == list.capacity())
        list.reserve(std::max<std::size_t>(2, 2 * list.size()));
}

/// The nodes visited by a search, in the order of their visits, each with its predecessor.
class Search
{
public:
    explicit Search(std::size_t start) : _nodes{start}, _from{{start, start}} {}

    void Meet(std::size_t node, std::size_t from)
    {
        if (_from.try_emplace(node, from).second)
            _nodes.push_back(node);
    }

    std::vector<std::size_t>& Nodes() { return _nodes; }

    /// The path by which the search reached a node, in reverse.
    std::vector<std::size_t> WayBack(std::size_t node) const
    {
        std::vector<std::size_t> way{node};
        for (std::size_t from = _from.at(node); from != way.back(); from = _from.at(from))
            way.push_back(from);
        return way;
    }

private:
    std::vector<std::size_t> _nodes;
    std::unordered_map<std::size_t, std::size_t> _from;
};

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

void LinkTable::Add(std::size_t link, std::size_t tail, std::size_t head)
{
    _links.resize(std::max(_links.size(), link + 1));
    _out.resize(std::max(_out.size(), tail + 1));
    _in.resize(std::max(_in.size(), head + 1));
    ReserveOneMore(_out[tail]);
    ReserveOneMore(_in[head]);
    _links[link] = {tail, head, _out[tail].size(), _in[head].size()};
    _out[tail].push_back(link);
    _in[head].push_back(link);
}

void LinkTable::Remove(std::size_t link) noexcept
{
    const Link& removed = _links[link];
    auto& out = _out[removed.Tail];
    out[removed.OutPosition] = out.back();
    _links[out.back()].OutPosition = removed.OutPosition;
    out.pop_back();
    auto& in = _in[removed.Head];
    in[removed.InPosition] = in.back();
    _links[in.back()].InPosition = removed.InPosition;
    in.pop_back();
}

void OnlineOrder::Append(std::size_t node)
{
    if (node >= _position.size())
        _position.resize(node + 1);
    _position[node] = _end++;
}

void OnlineOrder::Assign(const std::vector<std::size_t>& order)
{
    _position.clear();
    for (const std::size_t node : order)
        Append(node);
}

std::vector<std::size_t> OnlineOrder::Admit(const LinkTable& links, std::size_t tail,
                                            std::size_t head)
{
    if (tail == head)
        return {tail};
    if (_position[tail] < _position[head])
        return {};
    if (links.In(tail).empty()) {
        Move(tail, _front--);
        return {};
    }
    if (links.Out(head).empty()) {
        Move(head, _end++);
        return {};
    }

    Search forward(head);
    for (std::size_t done = 0; done < forward.Nodes().size(); ++done) {
        const std::size_t node = forward.Nodes()[done];
        for (const std::size_t link : links.Out(node)) {
            const std::size_t next = links.Head(link);
            if (_position[next] <= _position[tail])
                forward.Meet(next, node);
            if (next == tail) {
                std::vector<std::size_t> way = forward.WayBack(tail);
                std::reverse(way.begin() + 1, way.end());
                return way;
            }
        }
    }
    Search backward(tail);
    for (std::size_t done = 0; done < backward.Nodes().size(); ++done) {
        const std::size_t node = backward.Nodes()[done];
        for (const std::size_t link : links.In(node)) {
            const std::size_t next = links.Tail(link);
            if (_position[next] >= _position[head])
                backward.Meet(next, node);
        }
    }

    // Nodes that lead to the tail are assigned the first of these positions, and nodes reachable
    // from the head the rest; both groups keep their internal order.
    const auto isAhead = [this](std::size_t left, std::size_t right) {
        return _position[left] < _position[right];
    };
    std::vector<std::size_t> nodes = std::move(backward.Nodes());
    std::sort(nodes.begin(), nodes.end(), isAhead);
    std::vector<std::size_t>& followers = forward.Nodes();
    std::sort(followers.begin(), followers.end(), isAhead);
    nodes.insert(nodes.end(), followers.begin(), followers.end());
    std::vector<std::ptrdiff_t> places;
    places.reserve(nodes.size());
    for (const std::size_t node : nodes)
        places.push_back(_position[node]);
    std::sort(places.begin(), places.end());
    for (std::size_t i = 0; i < nodes.size(); ++i)
        Move(nodes[i], places[i]);
    return {};
}

void OnlineOrder::Move(std::size_t node, std::ptrdiff_t position)
{
    _moved.emplace_back(node, _position[node]);
    _position[node] = position;
}

void OnlineOrder::TakeBack() noexcept
{
    for (; !_moved.empty(); _moved.pop_back())
        _position[_moved.back().first] = _moved.back().second;
}

} // namespace Mox::Host
