// Edits of a graph over the nodes of the Core plug-in: flags and lists agree with the edges, the
// resolver that follows changes comes to the same as a full run, a refused edit changes nothing,
// and undoing everything restores the start.

#include "fuzz/support/Choices.h"
#include "fuzz/support/Claim.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialSaver.h"
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

/// Nodes, and what the graph is saved as.
std::string Describe(const MaterialGraph& graph)
{
    return FormatDocument(SaveMaterial(graph)) + DescribeNodes(graph);
}

std::string ResolveAnew(MaterialGraph& graph)
{
    ProblemList problems;
    GraphResolver(graph).Resolve(problems);
    return DescribeNodes(graph);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr int mostEdits = 40; // each is followed by a look at the whole graph
    Choices choices(data, size);
    MaterialGraph graph{NodeMaker(Plugins())};
    graph.AddNode("n0", "CoreMaths");
    GraphResolver resolver(graph);
    ProblemList problems;
    resolver.Resolve(problems);
    const std::string start = Describe(graph);
    ChangeHistory history(graph);
    GraphEditor editor(graph, [&choices](std::size_t end) { return choices.Below(end); });

    for (int edit = 0; edit < mostEdits && !choices.IsAtEnd(); ++edit) {
        // Saving is dear, so that not every change is watched that far.
        const auto describe = edit % 8 == 0 ? Describe : DescribeNodes;
        const std::string before = describe(graph);
        bool isRefused = false;
        try {
            history.Do(editor.Next());
        } catch (const HostError&) {
            isRefused = true;
        }
        if (isRefused)
            ClaimEqual(describe(graph), before, "a refused change changes nothing");
        ClaimEqual(FindDisagreement(graph), "", "nodes agree with the edges");
        resolver.Resolve(problems);
        const std::string incremental = DescribeNodes(graph);
        ClaimEqual(incremental, ResolveAnew(graph), "the resolver comes to the same as a full run");
        if (!isRefused && choices.Below(8) == 1) {
            const std::string after = describe(graph);
            if (after != before) { // else nothing was remembered
                history.Undo();
                resolver.Resolve(problems);
                ClaimEqual(describe(graph), before, "undoing restores what was");
                history.Redo();
                resolver.Resolve(problems);
                ClaimEqual(describe(graph), after, "redoing does it again");
            }
        }
        if (graph.Nodes().size() == 0) {
            history.Undo();
            resolver.Resolve(problems);
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
