#include "mox/graph/OpenMaterial.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/ProbeNode.h"

#include <gtest/gtest.h>

using namespace Mox::Host;

namespace {

TEST(OpenMaterial, FindsEverythingInOneGo)
{
    ProblemList problems;
    const MaterialGraph graph = LoadMaterial(
        MaterialFromText(ReadText(MOX_TEST_DATA "/graph/many_faults.txt")), ProbeMaker(), problems);
    ExpectGolden("graph/many_faults_found.txt", FormatProblems(problems));
    EXPECT_EQ(graph.Nodes().size(), 7u);
    EXPECT_EQ(graph.Edges().size(), 4u);
}

TEST(OpenMaterial, JudgesReferencesInAnyOrder)
{
    const auto judge = [](const char* document) {
        ProblemList problems;
        LoadMaterial(MaterialFromText(document), TestPlugins(), problems);
        return problems.Problems().back().Message;
    };
    const std::string expected =
        "cannot copy property \"Reference\" as node typename \"Alien\" is not a valid typename";
    EXPECT_EQ(judge("t CoreTexture; Reference=a\na Alien"), expected);
    EXPECT_EQ(judge("a Alien\nt CoreTexture; Reference=a"), expected);
}

/// Loading terminates even for documents full of cycles.
TEST(OpenMaterial, GivesUpOnVeryManyCircles)
{
    constexpr auto reference = Mox::Materials::GuiPropertyKind::Node;
    MaterialDocument document;
    for (int i = 0; i < 2000; ++i) {
        const std::string one = std::to_string(2 * i);
        const std::string two = std::to_string(2 * i + 1);
        document.Nodes.push_back({one, "Probe", 0, {{"Master", reference, two, 0}}, 0});
        document.Nodes.push_back({two, "Probe", 0, {{"Master", reference, one, 0}}, 0});
        document.Edges.push_back({one, "out", two, "in_1", 0});
        document.Edges.push_back({two, "out", one, "in_1", 0});
    }
    ProblemList problems;
    const MaterialGraph graph = LoadMaterial(document, ProbeMaker(), problems);
    EXPECT_EQ(graph.Nodes().size(), 4000u);
    EXPECT_EQ(problems.Problems().size(), 202u);
}

} // namespace
