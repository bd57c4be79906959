#include "mox/Text.h"
#include "mox/graph/ChangeHistory.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/graph/MaterialSaver.h"
#include "tests/support/GraphEditor.h"
#include "tests/support/GraphText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>

using namespace Mox;
using namespace Mox::Host;
using Materials::Compose;

namespace {

unsigned FirstSeed()
{
    const char* text = std::getenv("MOX_TEST_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 1;
}

PluginSet CorePlugins()
{
    PluginSet plugins;
    plugins.Load(MOX_CORE_PLUGIN);
    return plugins;
}

std::string ResolveAnew(MaterialGraph& graph)
{
    ProblemList problems;
    GraphResolver(graph).Resolve(problems);
    return DescribeNodes(graph);
}

TEST(ChangeHistory, RandomEditsEndWhereTheyBegan)
{
    constexpr unsigned runs = 30;
    constexpr int editsOfRun = 150;
    const unsigned firstSeed = FirstSeed();
    std::cout << "seeds from " << firstSeed << " (MOX_TEST_SEED)\n";
    int done = 0;
    int refused = 0;
    const PluginSet plugins = CorePlugins();
    for (unsigned seed = firstSeed; seed < firstSeed + runs && !HasFailure(); ++seed) {
        SCOPED_TRACE(Compose("seed ", seed));
        ProblemList problems;
        MaterialGraph graph = LoadMaterial(
            ReadMaterialDocument(MOX_TEST_DATA "/../examples/flip_book.xml"), plugins, problems);
        GraphResolver resolver(graph);
        resolver.Resolve(problems);
        const std::string start = FormatDocument(SaveMaterial(graph));
        const std::string startNodes = DescribeNodes(graph);
        ChangeHistory history(graph);
        std::mt19937 random(seed);
        GraphEditor editor(graph, [&random](std::size_t end) {
            return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
        });
        for (int edit = 0; edit < editsOfRun && !HasFailure(); ++edit) {
            const std::string before = FormatDocument(SaveMaterial(graph));
            const std::string nodesBefore = DescribeNodes(graph);
            const GraphChange change = editor.Next();
            SCOPED_TRACE(change.Format());
            bool isRefused = false;
            try {
                history.Do(change);
                ++done;
            } catch (const HostError&) {
                isRefused = true;
                ++refused;
            }
            if (isRefused) {
                EXPECT_EQ(FormatDocument(SaveMaterial(graph)), before);
                EXPECT_EQ(DescribeNodes(graph), nodesBefore);
            }
            EXPECT_EQ(FindDisagreement(graph), "");
            resolver.Resolve(problems);
            const std::string incremental = DescribeNodes(graph);
            EXPECT_EQ(incremental, ResolveAnew(graph));
            if (edit % 8 == 0 && FormatDocument(SaveMaterial(graph)) != before) {
                history.Undo();
                EXPECT_EQ(FormatDocument(SaveMaterial(graph)), before);
                history.Redo();
                resolver.Resolve(problems);
                EXPECT_EQ(DescribeNodes(graph), incremental);
            }
            if (graph.Nodes().size() == 0)
                history.Undo();
        }
        const MaterialDocument saved = SaveMaterial(graph);
        const std::string end = FormatDocument(saved);
        const std::string endNodes = DescribeNodes(graph);
        ProblemList reloadProblems;
        MaterialGraph reloaded = LoadMaterial(saved, plugins, reloadProblems);
        EXPECT_FALSE(reloadProblems.HasErrors()) << FormatProblems(reloadProblems);
        EXPECT_EQ(ResolveAnew(reloaded), endNodes);
        EXPECT_EQ(FormatDocument(SaveMaterial(reloaded)), end);

        while (history.CanUndo())
            history.Undo();
        resolver.Resolve(problems);
        EXPECT_EQ(FormatDocument(SaveMaterial(graph)), start);
        EXPECT_EQ(DescribeNodes(graph), startNodes);
        while (history.CanRedo())
            history.Redo();
        resolver.Resolve(problems);
        EXPECT_EQ(FormatDocument(SaveMaterial(graph)), end);
        EXPECT_EQ(DescribeNodes(graph), endNodes);
    }
    std::cout << done << " edits done, " << refused << " refused\n";
    EXPECT_GT(done, refused / 4);
}

} // namespace
