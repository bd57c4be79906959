#include "mox/Text.h"
#include "mox/check/MaterialCheck.h"
#include "mox/document/MaterialDiff.h"
#include "mox/graph/GraphResolver.h"
#include "mox/graph/OpenMaterial.h"
#include "mox/interchange/CompleteMaterial.h"
#include "mox/interchange/InterchangeValue.h"
#include "mox/interchange/ReadMaterial.h"
#include "tests/support/BuildTree.h"
#include "tests/support/Files.h"
#include "tests/support/Golden.h"
#include "tests/support/MaterialText.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

std::string WriteAsMaterialX(MaterialDocument document, ProblemList& problems)
{
    MaterialGraph graph = LoadMaterial(std::move(document), TestPlugins(), problems);
    ResolveGraph(graph, problems);
    return WriteMaterialX(DescribeMaterial(graph, TestPlugins()), problems);
}

/// The ids, or quoted names, that problems mention.
std::set<std::string> ReportedNodes(const ProblemList& problems)
{
    std::set<std::string> nodes;
    for (const Problem& problem : problems.Problems())
        nodes.insert(problem.Where.Node);
    return nodes;
}

/// Whether a difference concerns a reported node or one of its steps.
bool IsReported(const std::string& difference, const std::set<std::string>& reported)
{
    if (!difference.starts_with("node") && !difference.starts_with("edge") &&
        !difference.starts_with("\""))
        return reported.contains("");
    return std::ranges::any_of(reported, [&](const std::string& node) {
        return !node.empty() && (difference.find(Compose("\"", node, "\"")) != difference.npos ||
                                 difference.find(Compose("\"", node, "_")) != difference.npos);
    });
}

void ExpectRoundTrip(const MaterialDocument& document)
{
    ProblemList problems;
    const std::string text = WriteAsMaterialX(document, problems);
    const MaterialDocument again = ParseMaterialX("again.mtlx", text, problems);
    EXPECT_FALSE(problems.HasErrors()) << text;
    const std::set<std::string> reported = ReportedNodes(problems);
    for (const std::string& line : DescribeDifferences(document, again, TestPlugins()))
        EXPECT_TRUE(IsReported(line, reported)) << document.File << ": " << line;
    ProblemList found;
    MaterialGraph graph = LoadMaterial(again, TestPlugins(), found);
    ResolveGraph(graph, found);
    ReportCountConflicts(graph, found);
    CheckMaterial(graph, "again.mtlx", TestEnvironment(), nullptr, found);
    for (const Problem& problem : found.Problems())
        EXPECT_NE(problem.Level, Severity::Error) << document.File << problem.Format() << text;
}

TEST(MaterialX, OfTheExamplesComesBackButForWhatIsReported)
{
    for (const auto& file : ExampleDocuments()) {
        const MaterialDocument document = ReadMaterialDocument(file);
        if (std::ranges::count(document.Nodes, "Surface", &DocumentNode::Type) > 0 ||
            std::ranges::count(document.Nodes, "SurfacePbr", &DocumentNode::Type) > 0)
            ExpectRoundTrip(document);
    }
}

/// Nothing is reported for this material, so nothing may differ.
TEST(MaterialX, OfDirectNodesComesBackWhole)
{
    const MaterialDocument document = MaterialFromText(R"(
        uv CoreUv; Name=uv1; PositionX=-120.5; PositionY=37
        paint CoreTexture; Name=rock; sRGB=true; Description=The artist's picture.
        bumps CoreTexture; Name=bumps; Colour Type=Normal
        again CoreTexture; Reference=paint
        tint CoreConstant; Name=tint; Default Colour=1 0.25 0.1
        much CoreConstant; Name=much; Constant Type=Scalar; Max Scalar=4; Default Scalar=2.5
        four CoreConstant; Constant Type=Scalar; Default Scalar=4; Lock=true
        tinted CoreMaths; Function=Multiply
        brighter CoreMaths; Function=Addition; Default Value 2=0.125
        mixed CoreMaths; Function=Lerp; Default Blend=0.75
        scaled MathsArithmetic; Function=Divide
        lower MathsArithmetic; Function=Minimum; Default Value 2=0.9
        burned CoreLayerBlend; Mode=Colour Burn
        parts CoreSwizzle
        place SurfaceWorldPosition
        turned VectorTransform; Kind=Direction; From=World; To=Object
        up CoreMaths; Function=Dot Product
        surface SurfacePbr
        uv.read -> paint.in_uv
        uv.read -> bumps.in_uv
        uv.read -> again.in_uv
        paint.out_colour -> tinted.in_value1
        tint.read -> tinted.in_value2
        tinted.out_value -> brighter.in_value1
        brighter.out_value -> mixed.in_value1
        again.out_colour -> mixed.in_value2
        mixed.out_value -> scaled.in_value1
        four.read -> scaled.in_value2
        scaled.out_value -> burned.in_value1
        tint.read -> burned.in_value2
        burned.out_value -> surface.in_colour
        mixed.out_value -> parts.in_vec
        parts.out_y -> surface.in_metalness
        place.read -> turned.in_vector
        turned.out_value -> up.in_value1
        place.read -> up.in_value2
        up.out_value -> lower.in_value1
        lower.out_value -> surface.in_roughness
        much.read -> surface.in_clearcoat
        bumps.out_colour -> surface.in_normal
    )");
    MaterialDocument named = document;
    named.Description = {{"name", "Stone"}, {"desc", "For walls."}};
    named.Bindings.push_back(
        {"texture", "rock", {{"default", "a b.png"}, {"wrap_u", "mirror"}}, 0, {}});
    ProblemList problems;
    const std::string text = WriteAsMaterialX(named, problems);
    const MaterialDocument again = ParseMaterialX("again.mtlx", text, problems);
    for (const Problem& problem : problems.Problems())
        ADD_FAILURE() << problem.Format();
    for (const std::string& line : DescribeDifferences(named, again, TestPlugins()))
        ADD_FAILURE() << line << "\n" << text;
}

/// Covers every function and mode of our nodes; composed nodes still yield programs after reading.
TEST(MaterialX, OfEveryChoiceComesBackButForWhatIsReported)
{
    for (const char* type : {"CoreMaths", "CoreLayerBlend", "MathsArithmetic", "MathsTrigonometry",
                             "VectorMaths", "UvTransform", "ColourAdjust", "ColourRamp",
                             "NoiseFractal", "PatternShapes", "NormalMaths"}) {
        const PluginNode node = TestPlugins().CreateNode(type);
        for (const auto& property : node.Properties().Properties) {
            for (const std::string& choice : property->Choices) {
                if (property->Name == "Execution Level")
                    continue;
                std::string text = Compose("uv CoreUv\npaint CoreTexture; Alpha=true\nn ", type,
                                           "; ", property->Name, "=", choice,
                                           "\nsurface Surface\nuv.read -> paint.in_uv\n");
                const PluginNode chosen = TestPlugins().CreateNode(type);
                chosen.Properties().Get(property->Name)->SetEnum(choice);
                chosen.UpdatePorts({});
                for (const auto& port : chosen.InputPorts()) {
                    const int count = port.CountFixed ? port.ComponentCount : 3;
                    text += Compose(count == 2   ? "uv.read"
                                    : count == 1 ? "paint.out_alpha"
                                                 : "paint.out_colour",
                                    " -> n.", port.Name, "\n");
                }
                const auto& output = chosen.OutputPorts().front();
                const bool isPair = output.CountFixed && output.ComponentCount == 2;
                text += isPair ? Compose("last CoreTexture; Name=last\nn.", output.Name,
                                         " -> last.in_uv\nlast.out_colour -> surface.in_colour\n")
                               : Compose("n.", output.Name, " -> surface.in_colour\n");
                SCOPED_TRACE(Compose(type, " ", choice));
                ExpectRoundTrip(MaterialFromText(text));
            }
        }
    }
}

/// The first problem of each document.
TEST(MaterialX, ThatIsBrokenIsReportedWithItsPlace)
{
    ExpectSession("interchange/broken.txt", [](const std::string& text) {
        ProblemList problems;
        ParseMaterialX("x.mtlx", text, problems);
        return problems.Problems().empty() ? "" : problems.Problems().front().Format() + "\n";
    });
}

TEST(MaterialX, ThatIsLongOrWideEnds)
{
    std::string chain;
    for (int i = 0; i < 5000; ++i)
        chain += Compose(
            "<add name=\"n", i, "\" type=\"float\"><input name=\"in1\" type=\"float\" nodename=\"n",
            i + 1, "\"/><input name=\"in2\" type=\"float\" nodename=\"n", i + 1, "\"/></add>\n");
    std::string nested;
    for (int i = 0; i < 20; ++i) // each use of a graph uses the next one twice
        nested += Compose(
            "<nodedef name=\"d", i, "\" node=\"u", i, "\"/><nodegraph name=\"g", i,
            "\" nodedef=\"d", i, "\"><u", i + 1, " name=\"a\" type=\"float\"/><u", i + 1,
            " name=\"b\" type=\"float\"/>"
            "<add name=\"n0\" type=\"float\"><input name=\"in1\" type=\"float\" nodename=\"a\"/>"
            "<input name=\"in2\" type=\"float\" nodename=\"b\"/></add>"
            "<output name=\"out\" type=\"float\" nodename=\"n0\"/></nodegraph>\n");
    nested += "<u0 name=\"n0\" type=\"float\"/>";
    for (const std::string& nodes : {chain, nested}) {
        ProblemList problems;
        ParseMaterialX("x.mtlx",
                       Compose("<materialx version=\"1.39\">", nodes,
                               "<gltf_pbr name=\"s\" type=\"surfaceshader\"><input "
                               "name=\"metallic\" type=\"float\" "
                               "nodename=\"n0\"/></gltf_pbr></materialx>"),
                       problems);
        EXPECT_TRUE(problems.HasErrors());
    }
}

/// The numbers that a material has for the base colour of a shader.
std::vector<float> ReadColour(const std::string& space)
{
    ProblemList problems;
    const MaterialDocument document = ParseMaterialX(
        "x.mtlx",
        Compose("<materialx version='1.39'><gltf_pbr name='s' type='surfaceshader'><input "
                "name='base_color' type='color3' value='0.2, 0.5, 0.8' colorspace='",
                space, "'/></gltf_pbr></materialx>"),
        problems);
    EXPECT_TRUE(problems.Problems().empty()) << space;
    for (const DocumentProperty& property : document.Nodes.begin()->Properties) {
        if (property.Name == "Default Colour")
            return ParsePropertyNumbers(property.Value);
    }
    return {};
}

/// The numbers were computed with the matrices and curves that define the spaces.
TEST(MaterialX, ColoursOfAllSpacesBecomeLinear)
{
    for (const auto& [space, light] : std::map<std::string, std::vector<float>>{
             {"lin_rec709", {0.2f, 0.5f, 0.8f}},
             {"srgb_texture", {0.033105f, 0.214041f, 0.603827f}},
             {"gamma22", {0.028991f, 0.217638f, 0.612066f}},
             {"g18_rec709", {0.055189f, 0.287175f, 0.669209f}},
             {"rec709_display", {0.021012f, 0.189465f, 0.585350f}},
             {"acescg", {-0.036493f, 0.535912f, 0.853093f}},
             {"g22_ap1", {-0.136854f, 0.238050f, 0.676930f}},
             {"lin_adobergb", {0.080493f, 0.5f, 0.812879f}},
             {"adobergb", {-0.046153f, 0.217756f, 0.629104f}},
             {"lin_displayp3", {0.132521f, 0.512618f, 0.835379f}},
             {"srgb_displayp3", {-0.007593f, 0.221651f, 0.645693f}}}) {
        const std::vector<float> found = ReadColour(space);
        ASSERT_EQ(found.size(), 3u) << space;
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(found[i], light[i], 2e-5f) << space << i;
    }
}

/// Records what is read from the files of the MaterialX project, if a copy is available.
TEST(MaterialX, OfItsProjectCarriesOver)
{
    const std::filesystem::path folder = MOX_TEST_DATA "/../../shared/mtlx";
    if (!std::filesystem::exists(folder))
        GTEST_SKIP() << "the files are not beside the tree";
    std::map<std::string, std::string> lines;
    std::size_t nodes = 0;
    int whole = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mtlx")
            continue;
        ProblemList problems;
        const MaterialDocument document = ReadMaterial(entry.path(), problems);
        std::map<std::string, int> counts;
        for (const Problem& problem : problems.Problems())
            ++counts[problem.Rule];
        std::string line =
            Compose(entry.path().filename().string(), ": ", document.Nodes.size(), " nodes");
        for (const auto& [rule, count] : counts)
            line += Compose(", ", count, " ", rule);
        lines[entry.path().filename().string()] = line + "\n";
        nodes += document.Nodes.size();
        whole += problems.Problems().empty() ? 1 : 0;
        if (problems.HasErrors())
            continue;
        MaterialGraph graph = LoadMaterial(document, TestPlugins(), problems);
        ResolveGraph(graph, problems);
        ReportCountConflicts(graph, problems);
        CheckMaterial(graph, "x.mtlx", TestEnvironment(), nullptr, problems);
        EXPECT_FALSE(problems.HasErrors()) << entry.path();
    }
    std::string text =
        Compose(lines.size(), " files, ", nodes, " nodes, ", whole, " files without a report\n");
    for (const auto& [file, line] : lines)
        text += line;
    ExpectGolden("interchange/project_files.txt", text);
}

} // namespace
