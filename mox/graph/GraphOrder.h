#pragma once

#include <cstddef>
#include <span>
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

/// Which links leave and reach each node. Nodes and links are small numbers that the caller gives;
/// laying and taking away a link costs the same however many a node has.
class LinkTable
{
public:
    /// Adds a link, or throws std::bad_alloc without a change. A link that has been there before
    /// can be added again without memory.
    void Add(std::size_t link, std::size_t tail, std::size_t head);
    void Remove(std::size_t link) noexcept;

    std::size_t Tail(std::size_t link) const { return _links[link].Tail; }
    std::size_t Head(std::size_t link) const { return _links[link].Head; }

    /// In no particular order; valid until the next change.
    std::span<const std::size_t> Out(std::size_t node) const { return At(_out, node); }
    std::span<const std::size_t> In(std::size_t node) const { return At(_in, node); }

private:
    struct Link
    {
        std::size_t Tail = 0;
        std::size_t Head = 0;
        std::size_t OutPosition = 0; ///< in the list of the tail
        std::size_t InPosition = 0;  ///< in the list of the head
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

/// A topological order of nodes that is kept up as links come (after Pearce and Kelly): a new link
/// that agrees with the order costs nothing, and one that does not moves only the nodes between its
/// ends, or the tail alone to the front if no link reaches it, or the head alone to the end if no
/// link leaves it. Without recursion. Links may go without notice, since the order stays right.
///
/// What Admit has moved can be taken back until it is kept: an order that was made without a link
/// need not obey that link, should it come back.
class OnlineOrder
{
public:
    /// Puts a new node behind all others.
    void Append(std::size_t node);

    /// Takes over a whole order.
    void Assign(const std::vector<std::size_t>& order);

    /// Makes a link from tail to head possible, before it is laid in links.
    /// @returns the way round that the link would close, from tail over head until just before tail
    ///          again; nothing changes then. Empty if there is none.
    std::vector<std::size_t> Admit(const LinkTable& links, std::size_t tail, std::size_t head);

    /// Make what Admit has moved since the last call final, or move it back.
    void Keep() noexcept { _moved.clear(); }
    void TakeBack() noexcept;

    /// Grows along every link.
    std::ptrdiff_t Position(std::size_t node) const { return _position[node]; }

private:
    void Move(std::size_t node, std::ptrdiff_t position);

    std::vector<std::ptrdiff_t> _position;                      ///< by node
    std::ptrdiff_t _front = 0;                                  ///< before all positions
    std::ptrdiff_t _end = 1;                                    ///< after all positions
    std::vector<std::pair<std::size_t, std::ptrdiff_t>> _moved; ///< nodes and where they were
};

} // namespace Mox::Host
