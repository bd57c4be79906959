#include "mox/Text.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/graph/MaterialSaver.h"
#include "tests/support/GraphEditor.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

using namespace Mox;
using namespace Mox::Host;
using Materials::Compose;

namespace {

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

/// Edits of an example by the choices of one seed, which end where they began.
void EditAndUndo(unsigned seed)
{
    constexpr int edits = 150;
    ProblemList problems;
    MaterialGraph graph =
        LoadMaterial(ReadMaterialDocument(MOX_EXAMPLES "/flip_book.xml"), TestPlugins(), problems);
    GraphResolver resolver(graph);
    resolver.Resolve(problems);
    const std::string start = Describe(graph);
    ChangeHistory history(graph);
    std::mt19937 random(seed);
    GraphEditor editor(graph, [&random](std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
    });
    int refused = 0;
    for (int edit = 0; edit < edits && !testing::Test::HasFailure(); ++edit) {
        const std::string before = Describe(graph);
        const GraphChange change = editor.Next();
        SCOPED_TRACE(change.Format());
        if (HostFailureOf([&] { history.Do(change); }) != "no failure") {
            ++refused;
            EXPECT_EQ(Describe(graph), before);
        }
        EXPECT_EQ(FindDisagreement(graph), "");
        resolver.Resolve(problems);
        const std::string after = Describe(graph);
        EXPECT_EQ(DescribeNodes(graph), ResolveAnew(graph));
        if (edit % 8 == 0 && after != before) {
            history.Undo();
            resolver.Resolve(problems);
            EXPECT_EQ(Describe(graph), before);
            history.Redo();
            resolver.Resolve(problems);
            EXPECT_EQ(Describe(graph), after);
        }
        if (graph.Nodes().size() == 0)
            history.Undo();
    }
    EXPECT_LT(refused, edits * 4 / 5);

    const std::string end = Describe(graph);
    MaterialGraph reloaded = LoadMaterial(SaveMaterial(graph), TestPlugins());
    ResolveAnew(reloaded);
    EXPECT_EQ(Describe(reloaded), end);
    while (history.CanUndo())
        history.Undo();
    resolver.Resolve(problems);
    EXPECT_EQ(Describe(graph), start);
    while (history.CanRedo())
        history.Redo();
    resolver.Resolve(problems);
    EXPECT_EQ(Describe(graph), end);
}

TEST(ChangeHistory, RandomEditsEndWhereTheyBegan)
{
    const char* first = std::getenv("MOX_TEST_SEED");
    const unsigned firstSeed = first ? static_cast<unsigned>(std::atoi(first)) : 1;
    for (unsigned seed = firstSeed; seed < firstSeed + 30 && !HasFailure(); ++seed) {
        SCOPED_TRACE(Compose("MOX_TEST_SEED=", seed));
        EditAndUndo(seed);
    }
}

} // namespace
