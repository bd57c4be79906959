#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace Mox::Host {

/// A link between two nodes, by index: the first node precedes the second.
using OrderLink = std::pair<std::size_t, std::size_t>;

/// A topological order of nodes, or a cycle that prevents one.
struct GraphOrder
{
    std::vector<std::size_t> Order; ///< all nodes; empty if there is a cycle
    std::vector<std::size_t> Cycle; ///< nodes of one cycle, in link order; empty if there is none
};

/// Reporting a cycle requires a traversal of all links, so the number of reported cycles per
/// document and kind of link is limited.
constexpr int mostCircles = 100;

/// Orders nodeCount nodes so that the first node of each link precedes the second; otherwise the
/// nodes keep their order. Not recursive; linear in nodes and links.
GraphOrder OrderNodes(std::size_t nodeCount, const std::vector<OrderLink>& links);

/// The outgoing and incoming links of each node. Nodes and links are identified by small numbers
/// that the caller assigns. Adding and removing a link takes constant time, regardless of the
/// number of links at a node.
class LinkTable
{
public:
    /// Adds a link, or throws std::bad_alloc without a change. A removed link can be added again
    /// without allocation.
    void Add(std::size_t link, std::size_t tail, std::size_t head);
    void Remove(std::size_t link) noexcept;

    std::size_t Tail(std::size_t link) const { return _links[link].Tail; }
    std::size_t Head(std::size_t link) const { return _links[link].Head; }

    /// In unspecified order; valid until the next change.
    std::span<const std::size_t> Out(std::size_t node) const { return At(_out, node); }
    std::span<const std::size_t> In(std::size_t node) const { return At(_in, node); }

private:
    struct Link
    {
        std::size_t Tail = 0;
        std::size_t Head = 0;
        std::size_t OutPosition = 0; ///< in the tail's list
        std::size_t InPosition = 0;  ///< in the head's list
    };

    using Lists = std::vector<std::vector<std::size_t>>;

    static std::span<const std::size_t> At(const Lists& lists, std::size_t node)
    {
        return node < lists.size() ? std::span<const std::size_t>(lists[node])
                                   : std::span<const std::size_t>();
    }

    std::vector<Link> _links;
    Lists _out;
    Lists _in;
};

/// A topological order of nodes that is maintained incrementally (after Pearce and Kelly). A new
/// link that conforms to the order costs nothing. Any other link moves only the nodes between its
/// ends, or only the tail to the front if it has no incoming links, or only the head to the end if
/// it has no outgoing links. Not recursive. Links can be removed without notification because the
/// order stays valid.
///
/// Moves made by Admit can be reverted until Keep is called: an order computed without a link need
/// not conform to that link if it is added again.
class OnlineOrder
{
public:
    /// Appends a new node after all others.
    void Append(std::size_t node);

    /// Replaces the entire order.
    void Assign(const std::vector<std::size_t>& order);

    /// Updates the order for a link from tail to head, before it is added to links.
    /// @returns the cycle that the link would close, from tail via head to the last node before
    ///          tail; nothing is changed in this case. Empty if there is no cycle.
    std::vector<std::size_t> Admit(const LinkTable& links, std::size_t tail, std::size_t head);

    /// Keep or revert all moves that Admit has made since the last call.
    void Keep() noexcept { _moved.clear(); }
    void TakeBack() noexcept;

    /// Increases along every link.
    std::ptrdiff_t Position(std::size_t node) const { return _position[node]; }

private:
    void Move(std::size_t node, std::ptrdiff_t position);

    std::vector<std::ptrdiff_t> _position;                      ///< by node
    std::ptrdiff_t _front = 0;                                  ///< less than all positions
    std::ptrdiff_t _end = 1;                                    ///< greater than all positions
    std::vector<std::pair<std::size_t, std::ptrdiff_t>> _moved; ///< nodes, old positions
};

} // namespace Mox::Host
