#include "mox/Text.h"
#include "mox/document/MaterialDiff.h"
#include "mox/interchange/ReadMaterial.h"
#include "tests/support/BuildTree.h"

#include <gtest/gtest.h>

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
                   {"x.mtlx:1: node \"i\": this value becomes fixed, because a node cannot read it "
                    "through a port"});
        ExpectSame(given,
                   ReadFixed(entry,
                             node("constant", "value") +
                                 Compose("<dot name='d' type='", entry.InputType,
                                         "'><input name='in' type='", entry.InputType,
                                         "' nodename='c'/></dot>"),
                             "nodename='d'"),
                   {});
        ExpectSame(usual, ReadFixed(entry, node("absval", "in"), "nodename='c'"),
                   {Compose("x.mtlx:2: node \"", entry.Input, "\": the input \"", entry.Input,
                            "\" must be a value; its default replaces the computed one"),
                    "x.mtlx:1: node \"c\": this node does not contribute to the material"});
    }
}

} // namespace
