#pragma once

#include "mox/graph/LinkTable.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace Mox::Host {

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
