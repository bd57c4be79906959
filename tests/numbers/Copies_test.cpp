#include "mox/Text.h"
#include "mox/bindings/FloatList.h"
#include "tests/numbers/NumbersTest.h"

#include <cmath>

using Mox::Materials::Compose;

namespace {

constexpr std::size_t caseCount = 256;
constexpr Tolerance sixDigits = {50.0, "text holds six digits: up to 5e-6 of the value"};
constexpr const char* precisions[] = {"float", "half"};

Result Exactly(double value)
{
    return Expected{value, std::abs(value)};
}

/// Nodes that only move components.
using CopiedNumbers = NumbersTest;

struct Outputs
{
    const char* Settings;
    const char* Ports; ///< separated by spaces
    std::size_t Count; ///< total number of components of the ports
};

struct ConstantKind
{
    Outputs Type;
    std::array<double, 4> Defaults;
    const char* Value; ///< that a host assigns to the binding
};

/// A third has no finite decimal representation, so the text rounds it.
constexpr const char* constantDefaults =
    "; Default Colour=0.25 0.333333333 -1.5; Default Scalar=0.1428571429; Default Alpha=0.0625";
constexpr std::array<double, 4> colour = {0.25, 1.0 / 3.0, -1.5, 0.0625};
constexpr std::array<double, 4> sevenths = {1.0 / 7.0, 1.0 / 7.0, 1.0 / 7.0, 1.0 / 7.0};

constexpr ConstantKind constantKinds[] = {
    {{"Colour", "read", 3}, colour, "1,0,-0.0078125"},
    {{"Colour; Alpha=true", "read", 3}, colour, "1,0,100"},
    {{"Colour; Alpha=true", "read alpha", 4}, colour, "0.125,1,-2,0.75"},
    {{"Component", "red green blue", 3}, colour, "1,0,-0.0078125"},
    {{"Component; Alpha=true", "red green blue alpha", 4}, colour, "0.125,1,-2,0.75"},
    {{"Scalar", "read", 1}, sevenths, "-3.5"},
    {{"Vector; Component Count=2", "read", 2}, sevenths, "4,-5"},
    {{"Vector; Component Count=3", "read", 3}, sevenths, "4,-5,0.5"},
    {{"Vector; Component Count=4", "read", 4}, sevenths, "4,-5,0.5,1024"},
};

TEST_F(CopiedNumbers, OfConstants)
{
    Comparison locked("Locked constant", sixDigits);
    Comparison unlocked("Unlocked constant", {1.0, "the document's digits become a float"});
    for (const ConstantKind& kind : constantKinds) {
        std::vector<float> set;
        ASSERT_TRUE(Mox::Materials::ParseFloatList(kind.Value, set));
        const auto asDefault = [&](std::size_t, std::size_t at) {
            return Exactly(kind.Defaults[at]);
        };
        const auto asSet = [&](std::size_t, std::size_t at) { return Exactly(set[at]); };
        for (const char* precision : precisions) {
            const auto write = [&](const char* lock) {
                return Compose("node CoreConstant; Name=tint; Lock=", lock, constantDefaults,
                               "; Constant Type=", kind.Type.Settings, "\n",
                               WriteSink(precision, kind.Type.Ports));
            };
            const RunInputs nothing;
            const RunInputs given{{}, {{"tint", kind.Value}}, {}};
            // A locked constant has no binding that a host could set.
            Compare(write("true"), nothing, kind.Type.Count, asDefault, locked);
            Compare(write("true"), given, kind.Type.Count, asDefault, locked);
            Compare(write("false"), nothing, kind.Type.Count, asDefault, unlocked);
            Compare(write("false"), given, kind.Type.Count, asSet, unlocked);
        }
    }
}

/// The largest and smallest values of a locked constant.
TEST_F(CopiedNumbers, OfConstantsOfAllSizes)
{
    Comparison comparison("Locked scalar", sixDigits);
    for (const double value : {0.0, -0.0, 1e-30, -1e30, 16777216.0, 1234567.0, 0.000123456}) {
        Compare(
            Compose("node CoreConstant; Constant Type=Scalar; Lock=true; Default Scalar=",
                    Show(value), "\n", WriteSink("float", "read")),
            {}, 1, [&](std::size_t, std::size_t) { return Exactly(value); }, comparison);
    }
}

constexpr const char* componentWords[] = {"float", "half", "fixed", "int", "bool"};

/// The value after conversion to a type: integers truncate towards zero, and booleans keep only
/// whether it was zero. All other types are 32-bit floats.
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
    RunInputs inputs;
    const auto& values = inputs.Streams["v"] = MakeValues(51, caseCount);
    const auto compare = [&](const std::string& from, const std::string& to, std::size_t count,
                             bool isSplat) {
        const std::string width = count == 1 ? "" : Compose(count);
        Compare(
            Compose("v Feed:", from, isSplat ? "" : width, "\nsink Sink:=", to, width,
                    "\nv.read -> sink.in_0\n"),
            inputs, count,
            [&](std::size_t i, std::size_t at) {
                return Exactly(Keep(to, Keep(from, values[i][isSplat ? 0 : at])));
            },
            comparison);
    };
    for (const std::string from : componentWords) {
        for (const std::string to : componentWords) {
            for (std::size_t count = 1; count <= 4; ++count) {
                if (from != to) // equal types need no conversion
                    compare(from, to, count, false);
                if (count > 1)
                    compare(from, to, count, true);
            }
        }
    }
}

} // namespace
