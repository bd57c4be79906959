#include "mox/Text.h"
#include "mox/bindings/FloatBinding.h"
#include "tests/numbers/NumbersTest.h"

#include <cmath>
#include <sstream>

using Mox::Materials::Compose;

namespace {

constexpr std::size_t caseCount = 256;
constexpr Tolerance exact = {0.0, "values are copied"};
constexpr Tolerance printed = {50.0, "text holds six digits: up to 5e-6 of the value"};

/// Nodes that only move components from one place to another.
class CopiedNumbers : public NumbersTest
{
protected:
    /// What one material puts out for one set of streams.
    using Expectation = std::function<double(const RunInputs&, std::size_t index, std::size_t at)>;

    void Compare(const std::string& material, const RunInputs& inputs, std::size_t width,
                 const Expectation& expected, Comparison& comparison) const
    {
        const std::vector<Numbers> results = Evaluate(material, inputs);
        for (std::size_t i = 0; i < results.size(); ++i) {
            for (std::size_t c = 0; c < width; ++c) {
                const double value = expected(inputs, i, c);
                comparison.Check(results[i][c], Expected{value, std::abs(value)}, [&] {
                    return Compose("number ", c, " of ", Show(results[i]), " in\n", material);
                });
            }
        }
    }

    static double StreamValue(const RunInputs& inputs, std::size_t index, std::size_t at)
    {
        return inputs.Streams.begin()->second[index][at];
    }
};

struct VectorKind
{
    const char* Settings;
    std::size_t Count;
};

constexpr VectorKind vectorKinds[] = {
    {"Vector Type=Colour", 3},
    {"Vector Type=Uv", 2},
    {"Vector Type=Vector; Component Count=2", 2},
    {"Vector Type=Vector; Component Count=3", 3},
    {"Vector Type=Vector; Component Count=4", 4},
};

constexpr const char* letters[] = {"x", "y", "z", "w"};

TEST_F(CopiedNumbers, OfASplitVector)
{
    Comparison comparison("Swizzle", exact);
    for (const VectorKind& kind : vectorKinds) {
        for (const char* precision : {"float", "half"}) {
            std::string material =
                Compose("v Feed:", kind.Count, "\nnode CoreSwizzle; ", kind.Settings,
                        "\nsink Sink:", precision, "\nv.read -> node.in_vec\n");
            for (std::size_t i = 0; i < kind.Count; ++i)
                material += Compose("node.out_", letters[i], " -> sink.in_", i, "\n");
            RunInputs inputs;
            inputs.Streams["v"] = MakeValues(21, caseCount);
            Compare(material, inputs, kind.Count, StreamValue, comparison);
        }
    }
}

/// Every set of inputs with edges; the others read as zero.
TEST_F(CopiedNumbers, OfAMergedVector)
{
    Comparison comparison("Merge", exact);
    for (const VectorKind& kind : vectorKinds) {
        for (unsigned connected = 0; connected < 1u << kind.Count; ++connected) {
            std::string material = Compose("node CoreSwizzle; ", kind.Settings, "; Reverse=true\n",
                                           "sink Sink:", connected % 2 == 0 ? "float" : "half",
                                           "\nnode.out_vec -> sink.in_0\n");
            RunInputs inputs;
            for (std::size_t i = 0; i < kind.Count; ++i) {
                if ((connected >> i & 1u) == 0)
                    continue;
                material += Compose(letters[i], " Feed:1\n", letters[i], ".read -> node.in_",
                                    letters[i], "\n");
                inputs.Streams[letters[i]] =
                    MakeValues(static_cast<std::uint32_t>(31 + i), caseCount);
            }
            Compare(
                material, inputs, kind.Count,
                [&](const RunInputs& fed, std::size_t index, std::size_t at) {
                    const auto stream = fed.Streams.find(letters[at]);
                    return stream == fed.Streams.end() ? 0.0f : stream->second[index][0];
                },
                comparison);
        }
    }
}

struct Outputs
{
    const char* Settings;
    const char* Ports; ///< with blanks between them
    std::size_t Count; ///< of all numbers of the ports
};

std::string Connect(const Outputs& outputs)
{
    std::string edges;
    std::istringstream ports(outputs.Ports);
    int input = 0;
    for (std::string port; ports >> port; ++input)
        edges += Compose("node.", port, " -> sink.in_", input, "\n");
    return edges;
}

/// An output of alpha without an edge takes no part; with one it stands behind the others.
TEST_F(CopiedNumbers, OfVertexColours)
{
    Comparison comparison("Vertex colour", exact);
    for (const Outputs& outputs : {
             Outputs{"Colour Type=Colour", "out_colour", 3},
             Outputs{"Colour Type=Colour; Alpha=true", "out_colour", 3},
             Outputs{"Colour Type=Colour; Alpha=true", "out_colour out_alpha", 4},
             Outputs{"Colour Type=Component", "out_red out_green out_blue", 3},
             Outputs{"Colour Type=Component; Alpha=true", "out_red out_green out_blue", 3},
             Outputs{"Colour Type=Component; Alpha=true", "out_red out_green out_blue out_alpha",
                     4},
             Outputs{"Colour Type=Vector", "out_colour", 4},
         }) {
        for (const char* precision : {"float", "half"}) {
            const std::string material =
                Compose("node CoreVertexColour; Name=mask; ", outputs.Settings,
                        "\nsink Sink:", precision, "\n", Connect(outputs));
            RunInputs inputs;
            inputs.Streams["mask"] = MakeValues(41, caseCount);
            Compare(material, inputs, outputs.Count, StreamValue, comparison);
        }
    }
}

struct ConstantKind
{
    Outputs Type;
    std::array<double, 4> Defaults;
    const char* Value; ///< that a host gives the binding
};

/// A third has no end in tenths, so that text rounds it.
constexpr const char* constantDefaults =
    "; Default Colour=0.25 0.333333333 -1.5; Default Scalar=0.1428571429; Default Alpha=0.0625";

const ConstantKind constantKinds[] = {
    {{"Constant Type=Colour", "read", 3}, {0.25, 1.0 / 3.0, -1.5}, "1,0,-0.0078125"},
    {{"Constant Type=Colour; Alpha=true", "read", 3}, {0.25, 1.0 / 3.0, -1.5}, "1,0,100"},
    {{"Constant Type=Colour; Alpha=true", "read alpha", 4},
     {0.25, 1.0 / 3.0, -1.5, 0.0625},
     "0.125,1,-2,0.75"},
    {{"Constant Type=Component", "red green blue", 3}, {0.25, 1.0 / 3.0, -1.5}, "1,0,-0.0078125"},
    {{"Constant Type=Component; Alpha=true", "red green blue alpha", 4},
     {0.25, 1.0 / 3.0, -1.5, 0.0625},
     "0.125,1,-2,0.75"},
    {{"Constant Type=Scalar", "read", 1}, {1.0 / 7.0}, "-3.5"},
    {{"Constant Type=Vector; Component Count=2", "read", 2}, {1.0 / 7.0, 1.0 / 7.0}, "4,-5"},
    {{"Constant Type=Vector; Component Count=3", "read", 3},
     {1.0 / 7.0, 1.0 / 7.0, 1.0 / 7.0},
     "4,-5,0.5"},
    {{"Constant Type=Vector; Component Count=4", "read", 4},
     {1.0 / 7.0, 1.0 / 7.0, 1.0 / 7.0, 1.0 / 7.0},
     "4,-5,0.5,1024"},
};

TEST_F(CopiedNumbers, OfConstants)
{
    Comparison locked("Locked constant", printed);
    Comparison unlocked("Unlocked constant", {1.0, "the document's digits become a float"});
    for (const ConstantKind& kind : constantKinds) {
        for (const char* precision : {"float", "half"}) {
            const auto write = [&](const char* lock) {
                return Compose("node CoreConstant; Name=tint; ", kind.Type.Settings,
                               constantDefaults, "; Lock=", lock, "\nsink Sink:", precision, "\n",
                               Connect(kind.Type));
            };
            const auto defaults = [&](const RunInputs&, std::size_t, std::size_t at) {
                return kind.Defaults[at];
            };
            RunInputs inputs;
            Compare(write("true"), inputs, kind.Type.Count, defaults, locked);
            Compare(write("false"), inputs, kind.Type.Count, defaults, unlocked);
            inputs.Values["tint"] = kind.Value;
            // A locked constant has no binding that a host could set.
            Compare(write("true"), inputs, kind.Type.Count, defaults, locked);
            std::vector<float> values;
            ASSERT_TRUE(Mox::Materials::ParseFloatList(kind.Value, values));
            Compare(
                write("false"), inputs, kind.Type.Count,
                [&](const RunInputs&, std::size_t, std::size_t at) -> double { return values[at]; },
                unlocked);
        }
    }
}

/// The largest and the smallest values that a locked constant can be asked for.
TEST_F(CopiedNumbers, OfConstantsOfAllSizes)
{
    Comparison comparison("Locked scalar", printed);
    for (const double value : {0.0, -0.0, 1e-30, -1e30, 16777216.0, 1234567.0, 0.000123456}) {
        const std::string material = Compose(
            "node CoreConstant; Constant Type=Scalar; Lock=true; Default Scalar=", Show(value),
            "\nsink Sink:float\nnode.read -> sink.in_0\n");
        Compare(
            material, {}, 1, [&](const RunInputs&, std::size_t, std::size_t) { return value; },
            comparison);
    }
}

constexpr const char* componentWords[] = {"float", "half", "fixed", "int", "bool"};

/// What is left of a number in a type: whole numbers are cut off towards zero, and of a truth value
/// only whether it was zero. The other types are floats of 32 bits.
double Keep(const std::string& word, double value)
{
    if (word == "int")
        return std::trunc(value);
    if (word == "bool")
        return value != 0.0 ? 1.0 : 0.0;
    return value;
}

TEST_F(CopiedNumbers, OfAllTypesThatConvert)
{
    Comparison comparison("promoteAndSplat", exact);
    for (const std::string from : componentWords) {
        for (const std::string to : componentWords) {
            for (std::size_t count = 1; count <= 4; ++count) {
                for (const bool isSplat : {false, true}) {
                    if ((isSplat && count == 1) || (!isSplat && from == to))
                        continue; // the same types need no conversion
                    const std::string width = count == 1 ? "" : Compose(count);
                    const std::string material =
                        Compose("v Feed:", from, isSplat ? "" : width, "\nsink Sink:=", to, width,
                                "\nv.read -> sink.in_0\n");
                    RunInputs inputs;
                    inputs.Streams["v"] = MakeValues(51, caseCount);
                    Compare(
                        material, inputs, count,
                        [&](const RunInputs& fed, std::size_t index, std::size_t at) {
                            return Keep(to, Keep(from, StreamValue(fed, index, isSplat ? 0 : at)));
                        },
                        comparison);
                }
            }
        }
    }
}

} // namespace
