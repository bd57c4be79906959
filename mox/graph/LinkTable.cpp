#include "mox/graph/LinkTable.h"

#include <algorithm>

namespace Mox::Host {

namespace {

/// Grows in steps that keep the sum of all steps proportional to the last size.
template <class Item>
void GrowTo(std::vector<Item>& items, std::size_t size)
{
    if (items.size() < size)
        items.resize(size);
}

void ReserveOneMore(std::vector<std::size_t>& list)
{
    if (list.size() == list.capacity())
        list.reserve(std::max<std::size_t>(2, 2 * list.size()));
}

} // namespace

void LinkTable::Reserve(std::size_t link, std::size_t tail, std::size_t head)
{
    GrowTo(_links, link + 1);
    GrowTo(_out, std::max(tail, head) + 1);
    GrowTo(_in, std::max(tail, head) + 1);
    ReserveOneMore(_out[tail]);
    ReserveOneMore(_in[head]);
}

void LinkTable::Add(std::size_t link, std::size_t tail, std::size_t head)
{
    Reserve(link, tail, head);
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

} // namespace Mox::Host
