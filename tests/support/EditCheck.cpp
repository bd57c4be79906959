#include "tests/support/EditCheck.h"

#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/graph/MaterialSaver.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Claim.h"
#include "tests/support/Failure.h"
#include "tests/support/GraphText.h"

#include <map>

using namespace Mox::Host;
using Mox::Materials::Compose;
using Mox::Materials::GuiNode;
using Mox::Materials::GuiPort;

namespace {

void ResolveAnew(MaterialGraph& graph)
{
    ProblemList problems;
    GraphResolver(graph).Resolve(problems);
}

/// Where the edge lists of the nodes, the Connected flags of their ports or the topological order
/// do not agree with the edges of the graph: a line for each.
std::string FindDisagreement(const MaterialGraph& graph)
{
    std::string found;
    std::map<const GuiPort*, bool> isConnected;
    std::map<const GuiNode*, std::pair<std::size_t, std::size_t>> edges; ///< in, out
    for (const MaterialGraph::Edge& edge : graph.Edges()) {
        if (graph.IsLoose(edge))
            continue;
        auto& tail = *graph.Nodes()[edge.Tail].Gui.Handle();
        auto& head = *graph.Nodes()[edge.Head].Gui.Handle();
        isConnected[&tail.GetOutputPort(edge.Gui->TailPort)] = true;
        isConnected[&head.GetInputPort(edge.Gui->HeadPort)] = true;
        ++edges[&tail].second;
        ++edges[&head].first;
        const OnlineOrder& order = graph.Store().Order();
        if (order.Position(edge.Tail) >= order.Position(edge.Head))
            found += Compose("order of \"", graph.Nodes()[edge.Tail].Id, "\" and its reader\n");
    }
    for (const MaterialGraph::Node& node : graph.Nodes()) {
        if (std::pair(node.Gui.InEdges().size(), node.Gui.OutEdges().size()) !=
            edges[node.Gui.Handle().get()])
            found += Compose("edge lists of \"", node.Id, "\"\n");
        for (const auto* ports : {&node.Gui.InputPorts(), &node.Gui.OutputPorts()}) {
            for (const GuiPort& port : *ports) {
                if (port.Connected != isConnected[&port])
                    found += Compose("flag of \"", node.Id, "\" port \"", port.Name, "\"\n");
            }
        }
    }
    return found;
}

/// A history whose graph is always resolved.
class ResolvedHistory
{
public:
    explicit ResolvedHistory(MaterialGraph& graph)
        : _graph(graph), _history(graph), _resolver(graph)
    {
        Resolve();
    }

    /// @returns whether the change was not refused
    bool Do(const GraphChange& change)
    {
        const bool isDone = HostFailureOf([&] { _history.Do(change); }) == "no failure";
        ClaimEqual(FindDisagreement(_graph), "", "nodes agree with the edges");
        Resolve();
        const std::string incremental = DescribeNodes(_graph);
        ResolveAnew(_graph);
        ClaimEqual(incremental, DescribeNodes(_graph),
                   "the resolver comes to what a full run does");
        return isDone;
    }

    void Undo()
    {
        _history.Undo();
        Resolve();
    }

    bool CanRedo() const { return _history.CanRedo(); }

    void Redo()
    {
        _history.Redo();
        Resolve();
    }

    /// @returns the number of changes
    int UndoAll()
    {
        int count = 0;
        for (; _history.CanUndo(); ++count)
            _history.Undo();
        Resolve();
        return count;
    }

    void RedoAll(int count)
    {
        for (; count > 0; --count)
            _history.Redo();
        Resolve();
    }

private:
    void Resolve()
    {
        ProblemList problems;
        _resolver.Resolve(problems);
    }

    MaterialGraph& _graph;
    ChangeHistory _history;
    GraphResolver _resolver;
};

} // namespace

int CheckEdits(MaterialGraph& graph, const GraphEditor::Choice& choose,
               const std::function<bool()>& isOver)
{
    ResolvedHistory history(graph);
    const std::string start = DescribeGraph(graph);
    GraphEditor editor(graph, choose);
    int doneCount = 0;
    for (int edit = 0; !isOver(); ++edit) {
        // Saving is dear, so that not every change is watched that far.
        const auto describe = edit % 8 == 0 ? DescribeGraph : DescribeNodes;
        const std::string before = describe(graph);
        const bool isDone = history.Do(editor.Next());
        doneCount += isDone;
        if (!isDone)
            ClaimEqual(describe(graph), before, "a refused change changes nothing");
        const std::size_t fate = choose(8);
        const std::string after = isDone && fate < 2 ? describe(graph) : before;
        if (after != before) { // else nothing was remembered
            Claim(!history.CanRedo(), "a new change forgets what was undone");
            history.Undo();
            ClaimEqual(describe(graph), before, "undoing restores what was");
            if (fate == 1) {
                history.Redo();
                ClaimEqual(describe(graph), after, "redoing does it again");
            }
        }
        if (graph.Nodes().size() == 0)
            history.Undo();
    }

    const std::string end = DescribeGraph(graph);
    MaterialGraph reloaded = LoadMaterial(SaveMaterial(graph), TestPlugins());
    ResolveAnew(reloaded);
    ClaimEqual(DescribeGraph(reloaded), end, "what is saved is the graph");
    const int undone = history.UndoAll();
    ClaimEqual(DescribeGraph(graph), start, "undoing everything restores the start");
    history.RedoAll(undone);
    ClaimEqual(DescribeGraph(graph), end, "redoing everything comes to the end");
    return doneCount;
}
