#include "tests/support/EditCheck.h"

#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "tests/support/Claim.h"
#include "tests/support/Failure.h"
#include "tests/support/GraphText.h"

#include <map>

using namespace Mox::Host;
using Mox::Materials::Compose;
using Mox::Materials::GuiPort;

namespace {

/// Lists where edge lists of nodes, Connected flags of ports or the topological order are
/// inconsistent with the edges of the graph, one per line.
std::string FindDisagreement(const MaterialGraph& graph)
{
    std::string found;
    std::map<const GuiPort*, bool> isConnected;
    std::map<std::size_t, std::pair<std::size_t, std::size_t>> edges; ///< in, out
    for (const MaterialGraph::Edge& edge : graph.Edges()) {
        if (graph.Order().Position(edge.Tail) >= graph.Order().Position(edge.Head))
            found += Compose("order of \"", graph.Nodes()[edge.Tail].Id, "\" and its reader\n");
        if (edge.IsLoose)
            continue;
        const PluginNode& tail = graph.Nodes()[edge.Tail].Gui;
        const PluginNode& head = graph.Nodes()[edge.Head].Gui;
        if (edge.Gui->Tail.lock() != tail.Handle() || edge.Gui->Head.lock() != head.Handle())
            found += Compose("ends of an edge of \"", graph.Nodes()[edge.Tail].Id, "\"\n");
        isConnected[&tail.GetOutputPort({}, edge.Gui->TailPort)] = true;
        isConnected[&head.GetInputPort({}, edge.Gui->HeadPort)] = true;
        ++edges[edge.Tail].second;
        ++edges[edge.Head].first;
    }
    const auto nodes = graph.Nodes();
    for (auto node = nodes.begin(); node != nodes.end(); ++node) {
        if (std::pair(node->Gui.InEdges().size(), node->Gui.OutEdges().size()) !=
            edges[node.Index()])
            found += Compose("edge lists of \"", node->Id, "\"\n");
        for (const auto* ports : {&node->Gui.InputPorts(), &node->Gui.OutputPorts()}) {
            for (const GuiPort& port : *ports) {
                if (port.Connected != isConnected[&port])
                    found += Compose("flag of \"", node->Id, "\" port \"", port.Name, "\"\n");
            }
        }
    }
    return found;
}

/// A graph that is edited and resolved.
class EditedGraph
{
public:
    EditedGraph(MaterialGraph& graph, const NodeMaker& maker)
        : _graph(graph), _maker(maker), _history(graph), _resolver(graph)
    {
        Look();
    }

    const std::string& Text() const { return _text; }
    bool CanUndo() const { return _history.CanUndo(); }
    bool CanRedo() const { return _history.CanRedo(); }

    /// @returns whether the change was accepted
    bool Do(const GraphChange& change)
    {
        const std::string before = _text;
        const std::string failure = HostFailureOf([&] { _history.Do(change); });
        Look();
        if (failure != "no failure")
            ClaimEqual(_text, before, "a refused change changes nothing");
        return failure == "no failure";
    }

    void Undo()
    {
        _history.Undo();
        Look();
    }

    void Redo()
    {
        _history.Redo();
        Look();
    }

    void CompareWithDocument() const
    {
        ProblemList problems;
        const std::string written = FormatMaterialDocument(_graph.Document());
        MaterialGraph loaded(ParseMaterialDocument(_graph.Document().File, written, problems),
                             _maker);
        ResolveGraph(loaded, problems);
        ClaimEqual(_text, DescribeGraph(loaded), "the graph is what its document says");
    }

private:
    void Look()
    {
        ClaimEqual(FindDisagreement(_graph), "", "nodes agree with the edges");
        ProblemList problems;
        _resolver.Resolve(problems);
        _text = DescribeGraph(_graph);
    }

    MaterialGraph& _graph;
    const NodeMaker& _maker;
    ChangeHistory _history;
    GraphResolver _resolver;
    std::string _text;
};

} // namespace

int CheckEdits(MaterialGraph& graph, const NodeMaker& maker, const GraphEditor::Choice& choose,
               const std::function<bool()>& isOver)
{
    EditedGraph edited(graph, maker);
    const std::string start = edited.Text();
    GraphEditor editor(graph, choose);
    constexpr int editsPerComparison = 10; // loading takes a hundred times as long as an edit
    int doneCount = 0;
    for (int editCount = 1; !isOver(); ++editCount) {
        const std::string before = edited.Text();
        const bool isDone = edited.Do(editor.Next());
        doneCount += isDone;
        const std::string after = edited.Text();
        const std::size_t fate = choose(8);
        if (isDone && fate < 2 && after != before) { // otherwise nothing was recorded
            Claim(!edited.CanRedo(), "a new change forgets what was undone");
            edited.Undo();
            ClaimEqual(edited.Text(), before, "undoing restores what was");
            if (fate == 1) {
                edited.Redo();
                ClaimEqual(edited.Text(), after, "redoing does it again");
            }
        }
        if (graph.Document().Nodes.empty())
            edited.Undo();
        if (editCount % editsPerComparison == 0)
            edited.CompareWithDocument();
    }

    edited.CompareWithDocument();
    const std::string end = edited.Text();
    int undone = 0;
    for (; edited.CanUndo(); ++undone)
        edited.Undo();
    ClaimEqual(edited.Text(), start, "undoing everything restores the start");
    edited.CompareWithDocument();
    for (; undone > 0; --undone)
        edited.Redo();
    ClaimEqual(edited.Text(), end, "redoing everything comes to the end");
    edited.CompareWithDocument();
    return doneCount;
}
