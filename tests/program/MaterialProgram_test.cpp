#include "mox/Text.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/MaterialLoader.h"
#include "mox/program/MaterialProgram.h"
#include "tests/support/Golden.h"
#include "tests/support/MaterialText.h"
#include "tests/support/RandomMaterial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <sstream>

using namespace Mox;
using namespace Mox::Host;
using Materials::Compose;

namespace {

const Environment& TestEnvironment()
{
    static const Environment environment = ReadEnvironment(MOX_ENVIRONMENT_FOLDER);
    return environment;
}

CgProgram Build(const MaterialDocument& document, ProblemList& problems,
                const ProgramOptions& options = {})
{
    MaterialGraph graph = LoadMaterial(document, TestPlugins());
    ResolveGraph(graph, problems);
    return BuildMaterialProgram(graph, TestEnvironment(), options, problems);
}

CgProgram Build(const std::string& text, const ProgramOptions& options = {})
{
    ProblemList problems;
    CgProgram program = Build(MaterialFromText(text), problems, options);
    for (const Problem& problem : problems.Problems())
        EXPECT_EQ(problem.Level, Severity::Warning) << problem.Format();
    return program;
}

/// Problems of a material, a line each.
std::string ProblemsOf(const std::string& text)
{
    ProblemList problems;
    Build(MaterialFromText(text), problems);
    std::string lines;
    for (const Problem& problem : problems.Problems())
        lines += Compose(problem.Rule, ": ", problem.Format(), "\n");
    return lines;
}

std::string BothTexts(const CgProgram& program)
{
    return program.Vertex.Text + "// ---- fragment\n" + program.Fragment.Text;
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
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MOX_EXAMPLES)) {
        if (entry.path().extension() != ".xml")
            continue;
        ++count;
        ProblemList problems;
        const CgProgram program = Build(ReadMaterialDocument(entry.path()), problems);
        EXPECT_FALSE(problems.HasErrors()) << entry.path();
        ExpectGolden("program/" + entry.path().stem().string() + ".cg", BothTexts(program));
    }
    EXPECT_GT(count, 5);
}

TEST(MaterialProgram, HasANodeForEveryLineThatOneWrote)
{
    const CgProgram program = Build(tinted);
    for (const StageProgram* stage : {&program.Vertex, &program.Fragment}) {
        const auto lines = std::count(stage->Text.begin(), stage->Text.end(), '\n');
        EXPECT_EQ(stage->LineNodes.size(), static_cast<std::size_t>(lines));
    }
    const auto position = program.Fragment.Text.find("out_value = in_value1 * in_value2");
    ASSERT_NE(position, std::string::npos);
    const auto line = std::count(program.Fragment.Text.begin(),
                                 program.Fragment.Text.begin() + static_cast<long>(position), '\n');
    EXPECT_EQ(program.Fragment.LineNodes[static_cast<std::size_t>(line)], "tinted");
}

TEST(MaterialProgram, TextHangsOnTheMeaningOnly)
{
    const std::string text = BothTexts(Build(tinted));
    EXPECT_EQ(BothTexts(Build(tinted)), text) << "addresses differ";

    MaterialDocument reordered = MaterialFromText(tinted);
    std::reverse(reordered.Edges.begin(), reordered.Edges.end());
    ProblemList problems;
    EXPECT_EQ(BothTexts(Build(reordered, problems)), text);

    MaterialDocument moved = MaterialFromText(tinted);
    for (DocumentNode& node : moved.Nodes) {
        node.Properties.push_back({"PositionX", Materials::GuiPropertyKind::Float, "17"});
        node.Properties.push_back({"Description", Materials::GuiPropertyKind::String, "Says what"});
    }
    moved.Nodes[2].Properties.push_back(
        {"Default Colour", Materials::GuiPropertyKind::Colour, "1 0 0"});
    EXPECT_EQ(BothTexts(Build(moved, problems)), text);

    MaterialDocument renamed = MaterialFromText(tinted);
    for (DocumentNode& node : renamed.Nodes)
        node.Id += "\n*/ other";
    for (DocumentEdge& edge : renamed.Edges) {
        edge.Tail += "\n*/ other";
        edge.Head += "\n*/ other";
    }
    const std::string plain = BothTexts(Build(tinted, {false}));
    EXPECT_EQ(BothTexts(Build(renamed, problems, {false})), plain);
    EXPECT_EQ(plain.find("\"tinted\""), std::string::npos);
    EXPECT_FALSE(problems.HasErrors());
}

/// The level of each node's function shows in which program its code stands.
TEST(MaterialProgram, RunsEachFunctionWhereItMust)
{
    const auto stagesOf = [](const std::string& text, const std::string& body) {
        const CgProgram program = Build(text);
        return std::string(program.Vertex.Text.find(body) != std::string::npos ? "v" : "") +
               (program.Fragment.Text.find(body) != std::string::npos ? "f" : "");
    };
    const std::string sum = R"(
        uv CoreUv
        two CoreMaths; Function=Addition; Default Value 2=2
        t CoreTexture
        surface Surface
        uv.read -> two.in_value1
        two.out_value -> t.in_uv
        t.out_colour -> surface.in_colour
    )";
    const std::string body = "out_value = in_value1 + in_value2";
    EXPECT_EQ(stagesOf(sum, body), "f") << "nothing moves to the vertex stage unforced";

    std::string forced = sum;
    forced.replace(forced.find("two CoreMaths"), 13, "two CoreMaths; Execution Level=Vertex");
    EXPECT_EQ(stagesOf(forced, body), "v");

    // A vertex function needs the sum, and so does a fragment one: each stage computes it.
    const std::string both = sum + R"(
        anim CoreAnimatedUv
        t2 CoreTexture; Name=t2
        two.out_value -> anim.in_uv
        anim.out_uv1 -> t2.in_uv
        t2.out_colour -> surface.in_emission
    )";
    EXPECT_EQ(stagesOf(both, body), "vf");
    EXPECT_EQ(stagesOf(both, "float2 st1"), "v");

    // A mere copy that both need is made once, in the vertex stage.
    const std::string copy = R"(
        col CoreVertexColour
        split CoreSwizzle
        anim CoreAnimatedUv
        t CoreTexture
        surface Surface
        col.out_colour -> split.in_vec
        split.out_x -> anim.in_frame
        anim.out_uv1 -> t.in_uv
        t.out_colour -> surface.in_colour
        split.out_x -> surface.in_alpha
    )";
    EXPECT_EQ(stagesOf(copy, "out_x = in_vec.x"), "v");
}

TEST(MaterialProgram, FragmentResultNeededPerVertexIsAnErrorWithThePath)
{
    EXPECT_EQ(
        ProblemsOf(R"(
        uv CoreUv
        height CoreTexture
        scaled CoreMaths
        surface Surface
        uv.read -> height.in_uv
        height.out_colour -> scaled.in_value1
        scaled.out_value -> surface.in_offset
    )"),
        "stage-conflict: test.xml:2: node \"height\": function \"textureCode\" (2/1/f) runs per "
        "fragment, but its result is needed per vertex: node \"height\" -> node \"scaled\" -> "
        "node \"surface\" port \"in_offset\"\n");
}

TEST(MaterialProgram, NamesThatAreNoCgNamesWork)
{
    const CgProgram program = Build(R"(
        uv CoreUv; Name=2nd
        a CoreTexture; Name=texture2D
        b CoreTexture; Name=mix
        c CoreConstant; Name=a b
        d CoreConstant; Name=a_b
        e CoreConstant; Name=position
        f CoreConstant; Name=mathsCode
        m1 CoreMaths; Function=Multiply
        m2 CoreMaths; Function=Addition
        m3 CoreMaths; Function=Addition
        m4 CoreMaths; Function=Addition
        m5 CoreMaths; Function=Addition
        surface Surface
        uv.read -> a.in_uv
        uv.read -> b.in_uv
        a.out_colour -> m1.in_value1
        b.out_colour -> m1.in_value2
        m1.out_value -> m2.in_value1
        c.read -> m2.in_value2
        m2.out_value -> m3.in_value1
        d.read -> m3.in_value2
        m3.out_value -> m4.in_value1
        e.read -> m4.in_value2
        m4.out_value -> m5.in_value1
        f.read -> m5.in_value2
        m5.out_value -> surface.in_colour
    )");
    std::map<std::string, std::string> names;
    for (const ProgramParameter& parameter : program.Parameters)
        names[(parameter.IsBinding ? "" : "environment ") + parameter.Name] = parameter.CgName;
    EXPECT_EQ(names["2nd"], "_2nd");
    EXPECT_EQ(names["texture2D"], "texture2D_");
    EXPECT_EQ(names["mix"], "mix");
    EXPECT_EQ(names["a b"], "a_b_2");
    EXPECT_EQ(names["a_b"], "a_b");
    EXPECT_EQ(names["position"], "position");
    EXPECT_EQ(names["environment position"], "position_2");
    ExpectGolden("program/odd_names.cg", BothTexts(program));
}

TEST(MaterialProgram, OneNameIsOneParameterOfOneType)
{
    const std::string twoSets = R"(
        a CoreUv; Name=uv0
        b CoreUv; Name=uv0
        t CoreTexture
        m CoreMaths
        surface Surface
        a.read -> t.in_uv
        t.out_colour -> surface.in_colour
        b.read -> split.in_vec
        split.out_x -> surface.in_alpha
        split CoreSwizzle; Vector Type=Uv
    )";
    EXPECT_EQ(
        ProblemsOf(twoSets),
        "two-types: test.xml:2: node \"b\": parameter \"uv0\" is half2 here and float2 at node "
        "\"a\"\ndead-node: test.xml:4: node \"m\": nothing of this node reaches the surface\n");
}

/// n textures, all added up into the surface's colour.
std::string TextureSum(int count, bool ownCoordinates)
{
    std::string text = "surface Surface\nuv CoreUv\n";
    std::string last;
    for (int i = 0; i < count; ++i) {
        const std::string t = Compose("t", i);
        text += Compose(t, " CoreTexture; Name=", t, "\n");
        if (ownCoordinates) {
            text += Compose("anim", i, " CoreAnimatedUv; Rows=", i + 2, "\nuv.read -> anim", i,
                            ".in_uv\nanim", i, ".out_uv1 -> ", t, ".in_uv\n");
        } else {
            text += Compose("uv.read -> ", t, ".in_uv\n");
        }
        if (last.empty()) {
            last = t + ".out_colour";
            continue;
        }
        text += Compose("m", i, " CoreMaths; Function=Addition\n", last, " -> m", i, ".in_value1\n",
                        t, ".out_colour -> m", i, ".in_value2\n");
        last = Compose("m", i, ".out_value");
    }
    return text + last + " -> surface.in_colour\n";
}

TEST(MaterialProgram, TwoEndsAreToldWhateverTheyWrite)
{
    const std::string ends = R"(
        uv CoreUv
        paint CoreTexture
        one Surface
        idle Surface
        two Surface
        uv.read -> paint.in_uv
        paint.out_colour -> one.in_colour
    )";
    const std::string warning =
        "two-ends: test.xml:5: node \"two\": the material ends in node \"one\" too\n";
    EXPECT_EQ(ProblemsOf(ends), "");
    EXPECT_EQ(ProblemsOf(ends + "paint.out_colour -> two.in_emission"), warning);
    EXPECT_EQ(ProblemsOf(ends + "paint.out_colour -> two.in_colour").substr(0, warning.size()),
              warning);
}

TEST(MaterialProgram, AProblemDoesNotHideThoseBehindIt)
{
    const std::string problems = ProblemsOf(R"(
        uv CoreUv; Name=uv0
        lost CoreTexture
        behind CoreMaths
        bumps CoreTexture
        height CoreMaths
        a CoreUv; Name=uv0
        split CoreSwizzle; Vector Type=Uv
        surface Surface
        lost.out_colour -> behind.in_value1
        behind.out_value -> surface.in_colour
        uv.read -> bumps.in_uv
        bumps.out_colour -> height.in_value1
        height.out_value -> surface.in_offset
        a.read -> split.in_vec
        split.out_x -> surface.in_alpha
    )");
    std::string rules;
    std::istringstream lines(problems);
    for (std::string line; std::getline(lines, line);)
        rules += line.substr(0, line.find(':')) + " ";
    EXPECT_EQ(rules, "node-failed stage-conflict two-types ") << problems;
}

TEST(MaterialProgram, WhatTheEnvironmentLacksIsToldOnce)
{
    Environment environment = TestEnvironment();
    const auto normal =
        std::find_if(environment.Values.begin(), environment.Values.end(),
                     [](const EnvironmentEntry& value) { return value.Name == "worldNormal"; });
    ASSERT_NE(normal, environment.Values.end());
    normal->Inputs.front().SourceName = "lost";
    ProblemList problems;
    MaterialGraph graph = LoadMaterial(MaterialFromText(R"(
        facing SurfaceFacingRatio
        one CoreMaths
        two CoreMaths
        surface Surface
        facing.read -> one.in_value1
        one.out_value -> two.in_value1
        two.out_value -> surface.in_alpha
    )"),
                                       TestPlugins(), problems);
    ResolveGraph(graph, problems);
    BuildMaterialProgram(graph, environment, {}, problems);
    std::string rules;
    for (const Problem& problem : problems.Problems())
        rules += problem.Rule + " ";
    EXPECT_EQ(rules, "environment unfed-input ");
}

TEST(MaterialProgram, LimitsOfTheRegistersNameWhatIsInTheWay)
{
    EXPECT_EQ(ProblemsOf(TextureSum(16, false)), "");
    const std::string samplers = ProblemsOf(TextureSum(17, false));
    EXPECT_TRUE(
        samplers.starts_with("too-many-registers: test.xml: textures of the fragment program "
                             "need 17 registers, but there are 16: \"t"))
        << samplers;
    // Each coordinate takes two components, and the normal takes three of the forty.
    EXPECT_EQ(ProblemsOf(TextureSum(16, true)), "");
    std::string crowd = TextureSum(16, true);
    for (int i = 0; i < 4; ++i) {
        crowd += Compose("extra", i, " CoreVertexColour; Name=c", i, "; Colour Type=Vector\n");
        crowd += Compose("mix", i, " CoreMaths; Function=Addition\nextra", i, ".out_colour -> mix",
                         i, ".in_value1\n");
        if (i > 0)
            crowd += Compose("mix", i - 1, ".out_value -> mix", i, ".in_value2\n");
    }
    crowd += "split CoreSwizzle; Vector Type=Vector; Component Count=4\nmix3.out_value -> "
             "split.in_vec\nsplit.out_w -> surface.in_alpha\n";
    const std::string problems = ProblemsOf(crowd);
    EXPECT_TRUE(
        problems.starts_with("too-many-interpolants: test.xml: what the vertex program hands to "
                             "the fragment program does not fit into 10 registers"))
        << problems;
    EXPECT_NE(problems.find("\"out_uv1\" of node \"anim7\" (float2)"), std::string::npos)
        << problems;
}

TEST(MaterialProgram, RandomMaterialsExportAndRepeatToTheByte)
{
    const std::uint32_t first = std::random_device()();
    for (std::uint32_t seed = first; seed < first + 300; ++seed) {
        SCOPED_TRACE(seed);
        const MaterialDocument document = MakeRandomMaterial(seed, 1 + static_cast<int>(seed % 20));
        ProblemList problems;
        const std::string text = BothTexts(Build(document, problems));
        for (const Problem& problem : problems.Problems()) {
            // Values that cross are limited; everything else must work.
            ASSERT_TRUE(problem.Level == Severity::Warning ||
                        problem.Rule == "too-many-interpolants")
                << problem.Format();
        }
        EXPECT_EQ(BothTexts(Build(document, problems)), text);
    }
}

TEST(MaterialProgram, SharesWhatIsEqual)
{
    const CgProgram program = Build(R"(
        uv CoreUv
        t CoreTexture
        again CoreTexture; Reference=t
        a CoreMaths
        surface Surface
        uv.read -> t.in_uv
        uv.read -> again.in_uv
        t.out_colour -> a.in_value1
        again.out_colour -> a.in_value2
        a.out_value -> surface.in_colour
    )");
    const auto occurrences = [&](const std::string& wanted) {
        int count = 0;
        const std::string& text = program.Fragment.Text;
        for (auto at = text.find(wanted); at != std::string::npos; at = text.find(wanted, at + 1))
            ++count;
        return count;
    };
    EXPECT_EQ(occurrences("void textureCode("), 1);
    EXPECT_EQ(occurrences("textureCode("), 2) << "same function, same inputs: one call";
    EXPECT_EQ(occurrences("uniform sampler2D"), 1);
}

} // namespace
