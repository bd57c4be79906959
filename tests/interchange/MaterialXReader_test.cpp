#include "mox/Text.h"
#include "mox/document/MaterialDiff.h"
#include "mox/interchange/InterchangeValue.h"
#include "mox/interchange/ReadMaterial.h"
#include "tests/support/BuildTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

/// An input that must be a value, with a value other than its default.
struct FixedCase
{
    const char* Node;
    const char* Type;
    const char* Others; ///< the other inputs of the node
    const char* Input;
    const char* InputType;
    const char* Value;
};

constexpr const char* colourInput = "<input name='in' type='color3' value='0.2, 0.5, 0.8'/>";
constexpr const char* placeInputs = "<input name='file' type='filename' value='a.png'/>"
                                    "<input name='scale' type='vector2' value='2, 4'/>"
                                    "<input name='offset' type='vector2' value='0.5, 0.25'/>";

constexpr FixedCase fixedCases[] = {
    {"extract", "float", colourInput, "index", "integer", "2"},
    {"texcoord", "vector2", "", "index", "integer", "1"},
    {"geomcolor", "color3", "", "index", "integer", "1"},
    {"facingratio", "float", "", "faceforward", "boolean", "false"},
    {"facingratio", "float", "", "invert", "boolean", "true"},
    {"range", "color3", colourInput, "doclamp", "boolean", "true"},
    {"place2d", "vector2", placeInputs, "operationorder", "integer", "1"},
    {"gltf_image", "color3", placeInputs, "operationorder", "integer", "1"},
    {"grid", "float", "", "staggered", "boolean", "true"},
    {"fractal2d", "float", "", "octaves", "integer", "5"},
    {"fractal3d", "float", "", "lacunarity", "float", "3"},
    {"fractal3d", "float", "", "diminish", "float", "0.25"},
    {"unifiednoise2d", "float", "", "type", "integer", "1"},
};

struct FixedReading
{
    MaterialDocument Document;
    std::vector<std::string> Problems;
};

/// @param nodes further children of the node graph
/// @param source attribute of the input; without it, the node does not have the input
FixedReading ReadFixed(const FixedCase& entry, const std::string& nodes, const std::string& source)
{
    const std::string input = source.empty() ? ""
                                             : Compose("<input name='", entry.Input, "' type='",
                                                       entry.InputType, "' ", source, "/>");
    ProblemList problems;
    FixedReading reading;
    reading.Document = ParseMaterialX(
        "x.mtlx",
        Compose("<materialx version='1.39'><nodegraph name='g'>", nodes, "<", entry.Node,
                " name='n' type='", entry.Type, "'>\n", entry.Others, input, "</", entry.Node,
                ">\n<convert name='o' type='color3'><input name='in' type='", entry.Type,
                "' nodename='n'/></convert><output name='out' type='color3' nodename='o'/>"
                "</nodegraph><surface_unlit name='s' type='surfaceshader'><input "
                "name='emission_color' type='color3' nodegraph='g' output='out'/></surface_unlit>"
                "</materialx>"),
        problems);
    for (const Problem& problem : problems.Problems())
        reading.Problems.push_back(problem.Format());
    return reading;
}

/// Expects the same document with additional problems.
void ExpectSame(const FixedReading& expected, const FixedReading& found,
                const std::vector<std::string>& additional)
{
    EXPECT_EQ(DescribeDifferences(expected.Document, found.Document, TestPlugins()),
              std::vector<std::string>());
    std::vector<std::string> problems = found.Problems;
    for (const std::string& known : expected.Problems)
        std::erase(problems, known);
    EXPECT_EQ(problems, additional);
}

TEST(MaterialXReader, FollowsValuesThatNoPortCarries)
{
    for (const FixedCase& entry : fixedCases) {
        SCOPED_TRACE(Compose(entry.Node, " ", entry.Input));
        const std::string value =
            Compose("type='", entry.InputType, "' value='", entry.Value, "'/>");
        const auto node = [&](const char* category, const char* input) {
            return Compose("<", category, " name='c' type='", entry.InputType, "'><input name='",
                           input, "' ", value, "</", category, ">");
        };
        const FixedReading usual = ReadFixed(entry, "", "");
        const FixedReading given = ReadFixed(entry, "", Compose("value='", entry.Value, "'"));
        EXPECT_NE(DescribeDifferences(usual.Document, given.Document, TestPlugins()),
                  std::vector<std::string>());
        ExpectSame(given, ReadFixed(entry, "<input name='i' " + value, "interfacename='i'"),
                   {"x.mtlx:1: node \"g\": port \"i\": this value becomes fixed, because a node "
                    "cannot read it through a port"});
        ExpectSame(given,
                   ReadFixed(entry,
                             node("constant", "value") +
                                 Compose("<dot name='d' type='", entry.InputType,
                                         "'><input name='in' type='", entry.InputType,
                                         "' nodename='c'/></dot>"),
                             "nodename='d'"),
                   {});
        ExpectSame(usual, ReadFixed(entry, node("absval", "in"), "nodename='c'"),
                   {Compose("x.mtlx:2: node \"n\": port \"", entry.Input,
                            "\": the input must be a value; its default replaces the computed one"),
                    "x.mtlx:1: node \"c\": this node does not contribute to the material"});
    }
}

struct ShaderCase
{
    const char* Shader;
    const char* Inputs; ///< a word is the name of a node
    bool HasOcclusion;
    const char* Reports; ///< rules, and nodes or inputs
    const char* RenderState;
};

/// Each of them specifies the same surface with every input that is converted.
constexpr ShaderCase shaderCases[] = {
    {"gltf_pbr",
     "base_color=0.05, 0.2, 0.1; metallic=0.25; roughness=0.75; normal=0, 0.6, 0.8; "
     "occlusion=0.625; emissive=0.5, 0.25, 0.125; emissive_strength=2; alpha=0.5; alpha_mode=one; "
     "alpha_cutoff=0.25; specular=0.5; specular_color=0.5, 0.5, 0.5; ior=3; clearcoat=1; "
     "clearcoat_roughness=0.375; sheen_color=1, 1, 1",
     true,
     "interchange-composed s; interchange-approximated specular_color; interchange-dropped "
     "sheen_color; ",
     "alphaTest=Yes; alphaFunc=greaterOrEqual; alphaRef=0.25; "},
    {"open_pbr_surface",
     "base_weight=0.5; base_color=0.2, 0.4, 0.8; base_metalness=0.25; specular_weight=0.5; "
     "specular_color=0.5, 0.5, 0.5; specular_roughness=0.75; specular_ior=3; coat_weight=1; "
     "coat_color=0.5, 1, 0.25; coat_roughness=0.375; emission_luminance=2; "
     "emission_color=0.5, 0.25, 0.125; geometry_opacity=0.5; geometry_normal=0, 0.6, 0.8; "
     "fuzz_weight=0.5",
     false,
     "interchange-composed s; interchange-approximated specular_color; interchange-dropped "
     "fuzz_weight; interchange-approximated coat_color; ",
     "alphaBlend=Yes; sourceBlend=sourceAlpha; destBlend=oneMinusSourceAlpha; "},
    {"standard_surface",
     "base=0.5; base_color=1, 1, 1; metalness=0.25; specular=0.5; specular_color=0.5, 0.5, 0.5; "
     "specular_roughness=0.75; specular_IOR=3; subsurface=1; subsurface_color=0.2, 0.4, 0.8; "
     "coat=1; coat_color=0.5, 1, 0.25; coat_roughness=0.375; emission=2; "
     "emission_color=0.5, 0.25, 0.125; opacity=0.5, 0.5, 0.5; normal=0, 0.6, 0.8; "
     "transmission=0.5",
     false,
     "interchange-composed s; interchange-approximated specular_color; interchange-dropped "
     "transmission; interchange-approximated subsurface; interchange-approximated coat_color; ",
     "alphaBlend=Yes; sourceBlend=sourceAlpha; destBlend=oneMinusSourceAlpha; "},
    {"UsdPreviewSurface",
     "diffuseColor=0.05, 0.2, 0.1; emissiveColor=1, 0.5, 0.25; useSpecularWorkflow=one; "
     "metallic=0.25; roughness=0.75; clearcoat=1; clearcoatRoughness=0.375; opacity=0.5; "
     "opacityThreshold=0.25; ior=1.6666667; normal=0, 0.6, 0.8; occlusion=0.625",
     true, "interchange-dropped useSpecularWorkflow; ",
     "alphaTest=Yes; alphaFunc=greaterOrEqual; alphaRef=0.25; "},
};

std::string MakeShader(const ShaderCase& entry)
{
    std::string text =
        Compose("<materialx version='1.39'><constant name='one' type='integer'><input "
                "name='value' type='integer' value='1'/></constant><",
                entry.Shader, " name='s' type='surfaceshader'>");
    std::istringstream inputs(entry.Inputs);
    for (std::string input; std::getline(inputs >> std::ws, input, ';');) {
        const std::size_t sign = input.find('=');
        const std::string value = input.substr(sign + 1);
        text += Compose("<input name='", input.substr(0, sign), "' type='",
                        value.find(',') == value.npos ? "float" : "color3",
                        value == "one" ? "' nodename='" : "' value='", value, "'/>");
    }
    return Compose(text, "</", entry.Shader, "></materialx>");
}

/// The numbers of the constant at a port, before any transformation to tangent space.
std::vector<float> NumbersAt(const MaterialDocument& document, const std::string& node,
                             const std::string& port)
{
    for (const DocumentEdge& edge : document.Edges) {
        if (edge.Head != node || edge.HeadPort != port)
            continue;
        for (const DocumentNode& tail : document.Nodes) {
            if (tail.Id == edge.Tail && tail.Type == "VectorTransform")
                return NumbersAt(document, tail.Id, "in_vector");
            for (const DocumentProperty& property : tail.Properties) {
                if (tail.Id == edge.Tail && property.Name.starts_with("Default "))
                    return ParsePropertyNumbers(property.Value);
            }
        }
    }
    return {};
}

TEST(MaterialXReader, ConvertsEachShaderToAPhysicalSurface)
{
    const std::map<std::string, std::vector<float>> ports = {
        {"in_colour", {0.05f, 0.2f, 0.1f}},
        {"in_metalness", {0.25f}},
        {"in_roughness", {0.75f}},
        {"in_normal", {0.0f, 0.6f, 0.8f}},
        {"in_occlusion", {0.625f}},
        {"in_emission", {1.0f, 0.5f, 0.25f}},
        {"in_opacity", {0.5f}},
        {"in_specular", {0.78125f}},
        {"in_clearcoat", {1.0f}},
        {"in_clearcoatRoughness", {0.375f}},
    };
    for (const ShaderCase& entry : shaderCases) {
        SCOPED_TRACE(entry.Shader);
        ProblemList problems;
        const MaterialDocument document = ParseMaterialX("x.mtlx", MakeShader(entry), problems);
        for (const auto& [port, expected] : ports) {
            const std::vector<float> numbers = NumbersAt(document, "s", port);
            const bool isExpected = entry.HasOcclusion || port != "in_occlusion";
            ASSERT_EQ(numbers.size(), isExpected ? expected.size() : 0) << port;
            for (std::size_t i = 0; i < numbers.size(); ++i)
                EXPECT_NEAR(numbers[i], expected[i], 1e-6f) << port << i;
        }
        for (const DocumentNode& node : document.Nodes) {
            EXPECT_TRUE(node.Id == "s" ||
                        std::ranges::count(document.Edges, node.Id, &DocumentEdge::Tail) > 0)
                << node.Id << " has no reader";
        }
        std::string reports;
        for (const Problem& problem : problems.Problems()) {
            const Place& where = problem.Where;
            reports +=
                Compose(problem.Rule, " ", where.Port.empty() ? where.Node : where.Port, "; ");
        }
        EXPECT_EQ(reports, entry.Reports);
        std::string state;
        for (const DocumentValue& value : document.RenderState)
            state += Compose(value.Name, "=", value.Value, "; ");
        EXPECT_EQ(state, entry.RenderState);
    }
}

} // namespace
