#pragma once

#include "mox/document/DocumentChange.h"
#include "mox/graph/GraphChange.h"
#include "mox/graph/MaterialGraph.h"

#include <vector>

namespace Mox::Host {

/// The changes of a graph, to go back and forth through them. As long as it is used, every change
/// of the graph must go through it.
class ChangeHistory
{
public:
    explicit ChangeHistory(MaterialGraph& graph) : _graph(graph) {}

    /// Applies a change; what has been undone can no longer be redone. A change without effect is
    /// not remembered.
    /// @throws HostError as MaterialGraph::Apply does; graph and history are as before then
    void Do(const GraphChange& change);

    bool CanUndo() const { return !_undo.empty(); }
    bool CanRedo() const { return !_redo.empty(); }

    /// Take the last change back, or do it again. Without one they do nothing.
    void Undo() { Move(_undo, _redo); }
    void Redo() { Move(_redo, _undo); }

private:
    void Move(std::vector<DocumentChange>& from, std::vector<DocumentChange>& to);

    MaterialGraph& _graph;
    std::vector<DocumentChange> _undo; ///< inverses, last change last
    std::vector<DocumentChange> _redo;
};

} // namespace Mox::Host
