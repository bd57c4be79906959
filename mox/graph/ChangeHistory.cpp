#include "mox/graph/ChangeHistory.h"

#include <algorithm>
#include <variant>

namespace Mox::Host {

namespace {

void Collect(const DocumentChange& change, ChangedRecords& records)
{
    for (const DocumentStep& step : change.Steps) {
        if (const auto* node = std::get_if<RecordChange<DocumentNode>>(&step))
            records.Nodes.insert(node->Index);
        else if (const auto* edge = std::get_if<RecordChange<DocumentEdge>>(&step))
            records.Edges.insert(edge->Index);
        else if (const auto* annotation = std::get_if<RecordChange<DocumentAnnotation>>(&step))
            records.Annotations.insert(annotation->Index);
        else
            records.HasOthers = true;
    }
}

bool OnlySetsProperties(const GraphChange& change)
{
    return std::all_of(change.Steps.begin(), change.Steps.end(), [](const GraphStep& step) {
        return std::holds_alternative<SetProperties>(step);
    });
}

} // namespace

ChangedRecords ChangeHistory::Do(const GraphChange& change, const std::string& gesture,
                                 const std::string& title)
{
    // Allocated first, so that nothing can fail after the change.
    _undo.push_back({{}, title.empty() ? change.Summary() : title, gesture, _lastState + 1, {}});
    try {
        _undo.back().Inverse = _graph.Apply(change);
    } catch (...) {
        _undo.pop_back();
        throw;
    }
    if (_undo.back().Inverse.IsEmpty()) {
        _undo.pop_back();
        return {};
    }
    ++_lastState;
    _redo.clear();
    ChangedRecords records;
    Collect(_undo.back().Inverse, records);
    if (!gesture.empty() && OnlySetsProperties(change) && records.Edges.empty()) {
        _undo.back().SetNodes = records.Nodes;
        JoinLast();
    }
    return records;
}

/// Merges the last two entries if they set properties of the same nodes in one gesture, such as a
/// drag. Only the older entry's inverse is needed.
void ChangeHistory::JoinLast()
{
    if (_undo.size() < 2)
        return;
    const Entry& last = _undo.back();
    Entry& before = _undo[_undo.size() - 2];
    if (before.Gesture != last.Gesture || before.SetNodes != last.SetNodes)
        return;
    before.Title = last.Title;
    before.State = last.State;
    _undo.pop_back();
}

ChangedRecords ChangeHistory::Move(std::vector<Entry>& from, std::vector<Entry>& to)
{
    ChangedRecords records;
    std::string gesture;
    do {
        if (from.empty())
            break;
        Collect(from.back().Inverse, records);
        gesture = from.back().Gesture;
        to.push_back({{}, from.back().Title, gesture, from.back().State, from.back().SetNodes});
        try {
            to.back().Inverse = _graph.Undo(from.back().Inverse);
        } catch (...) {
            to.pop_back();
            throw;
        }
        from.pop_back();
    } while (!gesture.empty() && !from.empty() && from.back().Gesture == gesture);
    return records;
}

} // namespace Mox::Host
