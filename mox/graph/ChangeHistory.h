#pragma once

#include "mox/document/IndexedDocument.h"
#include "mox/graph/GraphChange.h"
#include "mox/graph/MaterialGraph.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace Mox::Host {

/// The records of a document that a change has added, changed or removed, by number.
struct ChangedRecords
{
    std::set<std::size_t> Nodes;
    std::set<std::size_t> Edges;
    std::set<std::size_t> Annotations;
    bool HasOthers = false; ///< bindings, description or render state
    bool IsEmpty() const
    {
        return Nodes.empty() && Edges.empty() && Annotations.empty() && !HasOthers;
    }
};

/// The changes of a graph, to go back and forth through them. As long as it is used, every change
/// of the graph must go through it.
class ChangeHistory
{
public:
    explicit ChangeHistory(MaterialGraph& graph) : _graph(graph) {}

    /// Applies a change; what has been undone can no longer be redone. A change without effect is
    /// not remembered.
    /// @param gesture changes that follow each other and have the same name here are one step for
    ///        Undo and Redo; an empty one is a step of its own
    /// @param title of the step; an empty one is the summary of the change
    /// @returns nothing for a change without effect
    /// @throws HostError as MaterialGraph::Apply does; graph and history are as before then
    ChangedRecords Do(const GraphChange& change, const std::string& gesture = {},
                      const std::string& title = {});

    bool CanUndo() const { return !_undo.empty(); }
    bool CanRedo() const { return !_redo.empty(); }

    /// Take the last step back, or do it again. Without one they do nothing.
    ChangedRecords Undo() { return Move(_undo, _redo); }
    ChangedRecords Redo() { return Move(_redo, _undo); }

    /// What Undo would take back and Redo would do, in words for people; empty if there is nothing.
    std::string UndoTitle() const { return CanUndo() ? _undo.back().Title : std::string(); }
    std::string RedoTitle() const { return CanRedo() ? _redo.back().Title : std::string(); }

    /// A number for the state of the graph. Undo and Redo bring back the number with the state; two
    /// different states never have the same one.
    std::uint64_t State() const { return _undo.empty() ? 0 : _undo.back().State; }

private:
    struct Entry
    {
        DocumentChange Inverse;
        std::string Title;
        std::string Gesture;
        std::uint64_t State = 0;        ///< after the change
        std::set<std::size_t> SetNodes; ///< those whose properties it sets, if it does nothing else
    };

    void JoinLast();
    ChangedRecords Move(std::vector<Entry>& from, std::vector<Entry>& to);

    MaterialGraph& _graph;
    std::vector<Entry> _undo; ///< last change last
    std::vector<Entry> _redo;
    std::uint64_t _lastState = 0;
};

} // namespace Mox::Host
