#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace Mox::Host {

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

} // namespace Mox::Host
