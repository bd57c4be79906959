// Edits of a graph over the nodes of the Core plug-in: flags and lists agree with the edges, the
// resolver that follows changes comes to the same as a full run, a refused edit changes nothing,
// and undoing everything restores the start.

#include "fuzz/support/Choices.h"
#include "fuzz/support/Claim.h"
#include "mox/host/ChangeHistory.h"
#include "mox/host/GraphResolver.h"
#include "mox/host/MaterialSaver.h"
#include "tests/support/GraphEditor.h"
#include "tests/support/GraphText.h"

using namespace Mox::Host;

namespace {

const PluginSet& Plugins()
{
    static const PluginSet plugins = [] {
        PluginSet set;
        set.Load(DefaultPluginFolder() / "mox_core.so");
        return set;
    }();
    return plugins;
}

std::string Describe(const MaterialGraph& graph)
{
    return FormatDocument(SaveMaterial(graph)) + DescribeNodes(graph);
}

std::string ResolveAnew(MaterialGraph& graph)
{
    ProblemList problems;
    GraphResolver(graph).Resolve(problems);
    return Describe(graph);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr int mostEdits = 60; // each is followed by a look at the whole graph
    Choices choices(data, size);
    MaterialGraph graph{NodeMaker(Plugins())};
    graph.AddNode("n0", "CoreMaths");
    GraphResolver resolver(graph);
    ProblemList problems;
    resolver.Resolve(problems);
    const std::string start = Describe(graph);
    ChangeHistory history(graph);
    GraphEditor editor(graph, [&choices](std::size_t end) { return choices.Below(end); });

    std::string current = start;
    for (int edit = 0; edit < mostEdits && !choices.IsAtEnd(); ++edit) {
        const GraphChange change = editor.Next();
        bool isRefused = false;
        try {
            history.Do(change);
        } catch (const HostError&) {
            isRefused = true;
        }
        if (isRefused)
            ClaimEqual(Describe(graph), current, "a refused change changes nothing");
        ClaimEqual(FindDisagreement(graph), "", "nodes agree with the edges");
        resolver.Resolve(problems);
        current = Describe(graph);
        ClaimEqual(current, ResolveAnew(graph), "the resolver comes to the same as a full run");
        if (graph.Nodes().size() == 0 || (choices.Below(8) == 1 && history.CanUndo())) {
            history.Undo();
            if (choices.Flip())
                history.Redo();
            if (graph.Nodes().size() == 0)
                history.Undo();
            resolver.Resolve(problems);
            current = Describe(graph);
        }
    }
    while (history.CanUndo())
        history.Undo();
    resolver.Resolve(problems);
    ClaimEqual(Describe(graph), start, "undoing everything restores the start");
    while (history.CanRedo())
        history.Redo();
    return 0;
}
