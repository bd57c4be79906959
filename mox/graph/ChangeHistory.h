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

/// The indices of the records of a document that a change has added, modified or removed.
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

/// The undo and redo history of a graph. While it is in use, every change of the graph must go
/// through it.
class ChangeHistory
{
public:
    explicit ChangeHistory(MaterialGraph& graph) : _graph(graph) {}

    /// Applies a change and clears the redo history. A change without effect is not recorded.
    /// @param gesture consecutive changes with the same gesture name form one step for Undo and
    ///        Redo; a change with an empty name is a step of its own
    /// @param title of the step; if empty, the summary of the change
    /// @returns an empty value for a change without effect
    /// @throws HostError as MaterialGraph::Apply does; graph and history are then unchanged
    ChangedRecords Do(const GraphChange& change, const std::string& gesture = {},
                      const std::string& title = {});

    bool CanUndo() const { return !_undo.empty(); }
    bool CanRedo() const { return !_redo.empty(); }

    /// Undo the last step, or redo the last undone step. They do nothing if there is none.
    ChangedRecords Undo() { return Move(_undo, _redo); }
    ChangedRecords Redo() { return Move(_redo, _undo); }

    /// The titles of the steps that Undo and Redo would apply, for display; empty if there is none.
    std::string UndoTitle() const { return CanUndo() ? _undo.back().Title : std::string(); }
    std::string RedoTitle() const { return CanRedo() ? _redo.back().Title : std::string(); }

    /// A number that identifies the state of the graph. Undo and Redo restore the number together
    /// with the state; two different states never have the same number.
    std::uint64_t State() const { return _undo.empty() ? 0 : _undo.back().State; }

private:
    struct Entry
    {
        DocumentChange Inverse;
        std::string Title;
        std::string Gesture;
        std::uint64_t State = 0;        ///< after the change
        std::set<std::size_t> SetNodes; ///< nodes whose properties are set, if nothing else is
    };

    void JoinLast();
    ChangedRecords Move(std::vector<Entry>& from, std::vector<Entry>& to);

    MaterialGraph& _graph;
    std::vector<Entry> _undo; ///< most recent change last
    std::vector<Entry> _redo;
    std::uint64_t _lastState = 0;
};

} // namespace Mox::Host
