#include "mox/graph/LinkTable.h"

#include <algorithm>

namespace Mox::Host {

namespace {

/// Makes room for an element, in steps that grow with the list.
void ReserveOneMore(std::vector<std::size_t>& list)
{
    if (list.size() == list.capacity())
        list.reserve(std::max<std::size_t>(2, 2 * list.size()));
}

} // namespace

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

} // namespace Mox::Host
