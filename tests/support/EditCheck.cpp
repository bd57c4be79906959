#include "tests/support/EditCheck.h"

#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "mox/host/HostError.h"
#include "tests/support/Claim.h"
#include "tests/support/GraphText.h"

#include <cstdint>
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
        Resolve();
    }

    const ChangeHistory& History() const { return _history; }

    /// Describes the complete graph; its nodes must agree with its edges.
    std::string Text() const
    {
        ClaimEqual(FindDisagreement(_graph), "", "nodes agree with the edges");
        return DescribeGraph(_graph);
    }

    /// @returns whether the change was accepted
    bool Do(const GraphChange& change)
    {
        try {
            _history.Do(change);
        } catch (const HostError&) {
            Resolve();
            return false;
        }
        Resolve();
        return true;
    }

    void Undo()
    {
        _history.Undo();
        Resolve();
    }

    void Redo()
    {
        _history.Redo();
        Resolve();
    }

    void CompareWithDocument() const
    {
        ProblemList problems;
        const std::string written = FormatMaterialDocument(_graph.Document());
        MaterialGraph loaded(ParseMaterialDocument(_graph.Document().File, written, problems),
                             _maker);
        ResolveGraph(loaded, problems);
        ClaimEqual(Text(), DescribeGraph(loaded), "the graph is what its document says");
    }

private:
    void Resolve()
    {
        ProblemList problems;
        _resolver.Resolve(problems);
    }

    MaterialGraph& _graph;
    const NodeMaker& _maker;
    ChangeHistory _history;
    GraphResolver _resolver;
};

/// What CheckEdits checks after an edit. Describing the whole graph takes far longer than the edit,
/// so most edits are checked together with later ones.
enum class Look
{
    Undoing,
    Redoing, ///< after undoing
    Document
};

constexpr std::size_t looks = 8; ///< including numbers after which nothing is checked

/// @param before the graph before the last change
void CheckUndo(EditedGraph& edited, const std::string& before, bool isRedone)
{
    const std::string after = edited.Text();
    Claim(!edited.History().CanRedo(), "a new change forgets what was undone");
    edited.Undo();
    ClaimEqual(edited.Text(), before, "undoing restores what was");
    if (!isRedone)
        return;
    edited.Redo();
    ClaimEqual(edited.Text(), after, "redoing does it again");
}

} // namespace

int CheckEdits(MaterialGraph& graph, const NodeMaker& maker, const GraphEditor::Choice& choose,
               const std::function<bool()>& isOver)
{
    EditedGraph edited(graph, maker);
    const std::string start = edited.Text();
    GraphEditor editor(graph, choose);
    int doneCount = 0;
    while (!isOver()) {
        const GraphChange change = editor.Next();
        const Look look = static_cast<Look>(choose(looks));
        const bool looksBack = look == Look::Undoing || look == Look::Redoing;
        const std::string before = looksBack ? edited.Text() : std::string();
        const std::uint64_t state = edited.History().State();
        const bool isDone = edited.Do(change);
        doneCount += isDone;
        if (look == Look::Document)
            edited.CompareWithDocument();
        if (looksBack && edited.History().State() == state)
            ClaimEqual(edited.Text(), before, "what is not remembered changes nothing");
        else if (looksBack)
            CheckUndo(edited, before, look == Look::Redoing);
        if (graph.Document().Nodes.empty())
            edited.Undo();
    }

    const std::string end = edited.Text();
    int undone = 0;
    for (; edited.History().CanUndo(); ++undone)
        edited.Undo();
    ClaimEqual(edited.Text(), start, "undoing everything restores the start");
    for (; undone > 0; --undone)
        edited.Redo();
    ClaimEqual(edited.Text(), end, "redoing everything comes to the end");
    return doneCount;
}
