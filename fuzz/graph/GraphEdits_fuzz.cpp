// Edits of a graph with nodes of the plug-ins, starting from a single node.

#include "fuzz/support/Choices.h"
#include "tests/support/BuildTree.h"
#include "tests/support/EditCheck.h"

using namespace Mox::Host;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr int mostEdits = 24; // each is made, undone and redone
    Choices choices(data, size);
    const NodeMaker maker(TestPlugins());
    MaterialGraph graph(maker);
    graph.Apply({{AddNode{{"n0", "CoreMaths", 0, {}}, {}}}});
    int edits = 0;
    CheckEdits(
        graph, maker, [&](std::size_t end) { return choices.Below(end); },
        [&] { return choices.IsAtEnd() || ++edits > mostEdits; });
    return 0;
}
