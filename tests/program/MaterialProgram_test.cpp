#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/program/MaterialProgram.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/GraphText.h"
#include "tests/support/MaterialText.h"
#include "tests/support/RandomMaterial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

using namespace Mox;
using namespace Mox::Host;
using Materials::Compose;

namespace {

CgProgram Build(const MaterialDocument& document, ProblemList& problems,
                const ProgramOptions& options = {},
                const Environment& environment = TestEnvironment())
{
    MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
    ResolveGraph(graph, problems);
    return BuildMaterialProgram(graph, environment, options, problems);
}

/// Describes the problems of a material or, if there are none, its parameters and both programs.
std::string Describe(const MaterialDocument& document, const ProgramOptions& options = {})
{
    ProblemList problems;
    const CgProgram program = Build(document, problems, options);
    std::string text = FormatProblems(problems);
    if (problems.HasErrors())
        return text;
    for (const ProgramParameter& parameter : program.Plan.Parameters)
        text += Compose("// ", parameter.IsBinding ? "binding" : "environment", " \"",
                        parameter.Name, "\": ", parameter.CgName, "\n");
    return Compose(text, program.Vertex.Text, "// ---- fragment\n", program.Fragment.Text);
}

const std::string tinted = R"(
    uv CoreUv; Name=uv0
    paint CoreTexture; Name=paintTexture
    tint CoreConstant; Name=tint
    tinted CoreMaths
    surface Surface
    uv.read -> paint.in_uv
    paint.out_colour -> tinted.in_value1
    tint.read -> tinted.in_value2
    tinted.out_value -> surface.in_colour
)";

TEST(MaterialProgram, OfEveryExample)
{
    for (const std::filesystem::path& file : ExampleDocuments()) {
        MaterialDocument document = ReadMaterialDocument(file);
        document.File = file.filename().string();
        ExpectGolden("program/" + file.stem().string() + ".cg", Describe(document));
    }
}

/// The first line of each material describes what its programs or problems demonstrate.
TEST(MaterialProgram, OfMaterialsWithAPoint)
{
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(MOX_TEST_DATA "/program/materials")) {
        if (entry.path().extension() != ".txt")
            continue;
        ++count;
        const std::string golden = "program/materials/" + entry.path().stem().string() + ".cg";
        ExpectGolden(golden, Describe(MaterialFromText(ReadText(entry.path()))));
    }
    EXPECT_EQ(count, 18);
}

TEST(MaterialProgram, HasANodeForEveryLineThatOneWrote)
{
    ProblemList problems;
    const CgProgram program = Build(MaterialFromText(tinted), problems);
    for (const StageProgram* stage : {&program.Vertex, &program.Fragment}) {
        const auto lines = std::count(stage->Text.begin(), stage->Text.end(), '\n');
        EXPECT_EQ(stage->Lines.size(), static_cast<std::size_t>(lines));
    }
    const auto position = program.Fragment.Text.find("out_value = in_value1 * in_value2");
    ASSERT_NE(position, std::string::npos);
    const auto line = std::count(program.Fragment.Text.begin(),
                                 program.Fragment.Text.begin() + static_cast<long>(position), '\n');
    EXPECT_EQ(program.Fragment.Lines[static_cast<std::size_t>(line)].Node, "tinted");
}

TEST(MaterialProgram, CommentsNameEachNodeOnce)
{
    const std::string text = Describe(MaterialFromText(R"(
        place SurfaceWorldPosition
        normal SurfaceWorldNormal
        surface Surface
        place.read -> surface.in_colour
        normal.read -> surface.in_emission
    )"));
    EXPECT_NE(text.find("// \"surface\" (conversion)\n"), std::string::npos) << text;
}

TEST(MaterialProgram, TextHangsOnTheMeaningOnly)
{
    const std::string text = Describe(MaterialFromText(tinted));
    EXPECT_EQ(Describe(MaterialFromText(tinted)), text) << "addresses differ";

    MaterialDocument reordered = MaterialFromText(tinted);
    std::reverse(reordered.Edges.begin(), reordered.Edges.end());
    EXPECT_EQ(Describe(reordered), text);

    MaterialDocument moved = MaterialFromText(tinted);
    for (DocumentNode& node : moved.Nodes) {
        node.Properties.push_back({"PositionX", Materials::GuiPropertyKind::Float, "17"});
        node.Properties.push_back({"Description", Materials::GuiPropertyKind::String, "Says what"});
    }
    moved.Nodes[2].Properties.push_back(
        {"Default Colour", Materials::GuiPropertyKind::Colour, "1 0 0"});
    EXPECT_EQ(Describe(moved), text);

    MaterialDocument renamed = MaterialFromText(tinted);
    for (DocumentNode& node : renamed.Nodes)
        node.Id += "\n*/ other";
    for (DocumentEdge& edge : renamed.Edges) {
        edge.Tail += "\n*/ other";
        edge.Head += "\n*/ other";
    }
    const std::string plain = Describe(MaterialFromText(tinted), {false});
    EXPECT_EQ(Describe(renamed, {false}), plain);
    EXPECT_EQ(plain.find("\"tinted\""), std::string::npos);
}

/// Textures t0, t1, ..., which are summed into the surface's colour.
std::string TextureSum(int count, bool ownCoordinates)
{
    std::string text = "surface Surface\nuv CoreUv\n";
    for (int i = 0; i < count; ++i) {
        text += Compose("t", i, " CoreTexture; Name=t", i, "\n");
        text += Compose("m", i, " CoreMaths; Function=Addition\n");
        text += Compose("t", i, ".out_colour -> m", i, ".in_value1\n");
        if (i > 0)
            text += Compose("m", i - 1, ".out_value -> m", i, ".in_value2\n");
        if (ownCoordinates)
            text += Compose("anim", i, " CoreAnimatedUv; Rows=", i + 2, "\nuv.read -> anim", i,
                            ".in_uv\nanim", i, ".out_uv1 -> t", i, ".in_uv\n");
        else
            text += Compose("uv.read -> t", i, ".in_uv\n");
    }
    return text + Compose("m", count - 1, ".out_value -> surface.in_colour\n");
}

TEST(MaterialProgram, WhatTheEnvironmentLacksIsToldOnce)
{
    Environment environment = TestEnvironment();
    const auto normal =
        std::ranges::find(environment.Values, "worldNormal", &EnvironmentEntry::Name);
    ASSERT_NE(normal, environment.Values.end());
    normal->Inputs.front().SourceName = "lost";
    ProblemList problems;
    Build(MaterialFromText(R"(
        facing SurfaceFacingRatio
        one CoreMaths
        two CoreMaths
        surface Surface
        facing.read -> one.in_value1
        one.out_value -> two.in_value1
        two.out_value -> surface.in_alpha
    )"),
          problems, {}, environment);
    std::string rules;
    for (const Problem& problem : problems.Problems())
        rules += problem.Rule + " ";
    EXPECT_EQ(rules, "environment unfed-input ");
}

TEST(MaterialProgram, OfAChangedGraphNeedsItResolved)
{
    ProblemList loading;
    MaterialGraph graph = LoadMaterial(MaterialFromText(tinted), TestPlugins(), loading);
    const auto build = [&](bool isResolved) {
        ProblemList problems;
        if (isResolved)
            ResolveGraph(graph, problems);
        BuildMaterialProgram(graph, TestEnvironment(), {}, problems);
        return FormatProblems(problems);
    };
    const std::string changed = "this node was changed after the graph was last resolved";
    EXPECT_NE(build(false).find(changed), std::string::npos);
    EXPECT_EQ(build(true), "");
    const DocumentChange inverse = graph.Apply({{Set("tint; Constant Type:enum=Scalar")}});
    EXPECT_NE(build(false).find("\"tint\": " + changed), std::string::npos) << build(false);
    EXPECT_EQ(build(true), "");
    graph.Undo(inverse);
    EXPECT_NE(build(false).find(changed), std::string::npos);
    EXPECT_EQ(build(true), "");
}

TEST(MaterialProgram, LimitsOfTheRegistersNameWhatIsInTheWay)
{
    const auto problemsOf = [](const std::string& text) {
        ProblemList problems;
        Build(MaterialFromText(text), problems);
        return FormatProblems(problems);
    };
    EXPECT_EQ(problemsOf(TextureSum(16, false)), "");
    // Each coordinate uses two of the forty components, and the normal three.
    const std::string full = TextureSum(16, true);
    EXPECT_EQ(problemsOf(full), "");
    ExpectGolden("program/limits.txt", problemsOf(TextureSum(17, false)) + problemsOf(full + R"(
        a CoreVertexColour; Name=a; Colour Type=Vector
        b CoreVertexColour; Name=b; Colour Type=Vector
        mix CoreMaths; Function=Addition
        split CoreSwizzle; Vector Type=Vector; Component Count=4
        a.out_colour -> mix.in_value1
        b.out_colour -> mix.in_value2
        mix.out_value -> split.in_vec
        split.out_w -> surface.in_alpha
    )"));
}

TEST(MaterialProgram, RandomMaterialsExportAndRepeatToTheByte)
{
    const std::uint32_t first = std::random_device()();
    for (std::uint32_t seed = first; seed < first + 300; ++seed) {
        SCOPED_TRACE(seed);
        const MaterialDocument document = MakeRandomMaterial(seed, 1 + static_cast<int>(seed % 20));
        const std::string text = Describe(document);
        // The number of interpolated values is limited; everything else must work.
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            ASSERT_FALSE(line.starts_with("error ") &&
                         !line.starts_with("error too-many-interpolants"))
                << line;
        EXPECT_EQ(Describe(document), text);
    }
}

} // namespace
