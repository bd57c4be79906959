#include "mox/graph/ChangeHistory.h"

namespace Mox::Host {

void ChangeHistory::Do(const GraphChange& change)
{
    _undo.emplace_back(); // the room comes first, so that nothing fails behind the change
    try {
        _undo.back() = _graph.Apply(change);
    } catch (...) {
        _undo.pop_back();
        throw;
    }
    if (_undo.back().Steps.empty())
        _undo.pop_back();
    else
        _redo.clear();
}

void ChangeHistory::Move(std::vector<GraphChange>& from, std::vector<GraphChange>& to)
{
    if (from.empty())
        return;
    to.emplace_back();
    try {
        to.back() = _graph.Apply(from.back());
    } catch (...) {
        to.pop_back();
        throw;
    }
    from.pop_back();
}

} // namespace Mox::Host
