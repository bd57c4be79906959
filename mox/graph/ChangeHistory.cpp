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
    if (_undo.back().IsEmpty())
        _undo.pop_back();
    else
        _redo.clear();
}

void ChangeHistory::Move(std::vector<DocumentChange>& from, std::vector<DocumentChange>& to)
{
    if (from.empty())
        return;
    to.emplace_back();
    try {
        to.back() = _graph.Undo(from.back());
    } catch (...) {
        to.pop_back();
        throw;
    }
    from.pop_back();
}

} // namespace Mox::Host
