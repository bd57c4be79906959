#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <algorithm>
#include <cmath>

using Mox::Materials::Compose;

namespace {

constexpr std::size_t mostPorts = 5;

/// What stands at the ports of a function, in their order, seen from one component of the result.
struct Arguments
{
    std::array<std::array<double, 4>, mostPorts> Ports;
    std::size_t Count;
    std::size_t Component;

    double operator[](std::size_t port) const { return Ports[port][Component]; }
};

using Reference = std::optional<Expected> (*)(const Arguments&);

double Saturate(double x)
{
    return std::clamp(x, 0.0, 1.0);
}

/// A number that comes out of one rounding.
Expected Rounded(double value)
{
    return {value, std::abs(value)};
}

/// A power is made of a logarithm and an exponential, so its error grows with the exponent. Below
/// zero there is no logarithm, and at zero none that an exponent of zero or less could use.
std::optional<Expected> Power(double base, double exponent)
{
    if (base < 0.0 || (base == 0.0 && exponent <= 0.0))
        return std::nullopt;
    if (base == 0.0)
        return Rounded(0.0);
    const double value = std::pow(base, exponent);
    return Expected{value, value * (1.0 + std::abs(exponent) * (1.0 + std::abs(std::log2(base))))};
}

Expected Mix(double a, double b, double share)
{
    return {(1.0 - share) * a + share * b, (std::abs(a) + std::abs(b)) * (1.0 + std::abs(share))};
}

struct Port
{
    const char* Name;
    const char* Property;  ///< its value without an edge; null: it must have one
    double Default = 0.0;  ///< that the tests give the property
    bool IsScalar = false; ///< whatever the node's count
};

const Port value1 = {"in_value1", "Default Value 1", 0.75};
const Port value2 = {"in_value2", "Default Value 2", -1.5};
const Port minimum = {"in_min", "Default Min", -0.5};
const Port maximum = {"in_max", "Default Max", 1.25};
const Port oldMinimum = {"in_oldmin", "Default Old Min", 0.125};
const Port oldMaximum = {"in_oldmax", "Default Old Max", 2.5};
const Port blend = {"in_blend", "Default Blend", 0.25, true};
const Port test1 = {"in_test1", "Default Test 1", 0.5, true};
const Port test2 = {"in_test2", "Default Test 2", 0.75, true};
const Port power = {"in_power", "Default Power", 2.5, true};
const Port scale = {"in_scale", "Default Scale", 1.5};
const Port facing = {"in_facing", nullptr, 0.0, true};

constexpr Tolerance exact = {0.0, "nothing is rounded"};
constexpr Tolerance once = {1.0, "one rounding, which may go either way"};
constexpr Tolerance mixed = {4.0, "a product and two sums of the scale's size"};
constexpr Tolerance summed = {4.0, "four products and three sums of the scale's size"};
constexpr Tolerance divided = {8.0, "a quotient of 2.5 steps before two roundings"};
constexpr Tolerance smoothed = {8.0, "a cubic before the mixture"};
constexpr Tolerance powered = {8.0, "4 steps each for the logarithm and for the exponential"};

struct MathsFunction
{
    const char* Name;
    std::vector<Port> Ports;
    Tolerance Allowed;
    Reference Of;
    bool GivesScalar = false; ///< whatever the node's count
};

const MathsFunction mathsFunctions[] = {
    {"Multiply",
     {value1, value2},
     once,
     [](const Arguments& in) -> std::optional<Expected> { return Rounded(in[0] * in[1]); }},
    {"Addition",
     {value1, value2},
     once,
     [](const Arguments& in) -> std::optional<Expected> { return Rounded(in[0] + in[1]); }},
    {"Subtraction",
     {value1, value2},
     once,
     [](const Arguments& in) -> std::optional<Expected> { return Rounded(in[0] - in[1]); }},
    {"Invert",
     {value1},
     once,
     [](const Arguments& in) -> std::optional<Expected> { return Rounded(1.0 - in[0]); }},
    {"Power", {value1, power}, powered, [](const Arguments& in) { return Power(in[0], in[1]); }},
    {"Clamp",
     {value1, minimum, maximum},
     exact,
     [](const Arguments& in) -> std::optional<Expected> {
         if (in[1] > in[2])
             return std::nullopt;
         return Rounded(in[0] < in[1] ? in[1] : in[0] > in[2] ? in[2] : in[0]);
     }},
    {"Range",
     {value1, minimum, maximum, oldMinimum, oldMaximum},
     divided,
     [](const Arguments& in) -> std::optional<Expected> {
         if (in[3] == in[4])
             return std::nullopt;
         return Mix(in[1], in[2], Saturate((in[0] - in[3]) / (in[4] - in[3])));
     }},
    {"Lerp",
     {value1, value2, blend},
     mixed,
     [](const Arguments& in) -> std::optional<Expected> { return Mix(in[0], in[1], in[2]); }},
    {"SmoothStep",
     {value1, value2, blend},
     smoothed,
     [](const Arguments& in) -> std::optional<Expected> {
         const double x = Saturate(in[2]);
         return Mix(in[0], in[1], 3.0 * x * x - 2.0 * x * x * x);
     }},
    {"Compare",
     {value1, value2, test1, test2},
     exact,
     [](const Arguments& in) -> std::optional<Expected> {
         return Rounded(in[2] < in[3] ? in[0] : in[1]);
     }},
    {"Dot Product",
     {value1, value2},
     summed,
     [](const Arguments& in) -> std::optional<Expected> {
         Expected sum{0.0, 0.0};
         for (std::size_t i = 0; i < in.Count; ++i) {
             const double product = in.Ports[0][i] * in.Ports[1][i];
             sum = {sum.Value + product, sum.Scale + std::abs(product)};
         }
         return sum;
     },
     true},
    {"Fresnel",
     {facing, minimum, scale, power},
     powered,
     [](const Arguments& in) -> std::optional<Expected> {
         const auto raised = Power(Saturate(1.0 - in[0]), in[3]);
         if (!raised)
             return std::nullopt;
         return Expected{in[1] + in[2] * raised->Value,
                         std::abs(in[1]) + std::abs(in[2]) * raised->Scale};
     },
     true},
    {"Ceil",
     {value1},
     exact,
     [](const Arguments& in) -> std::optional<Expected> { return Rounded(std::ceil(in[0])); }},
    {"Floor",
     {value1},
     exact,
     [](const Arguments& in) -> std::optional<Expected> { return Rounded(std::floor(in[0])); }},
    {"Frac",
     {value1},
     {1.0, "one rounding at most, of numbers below one"},
     [](const Arguments& in) -> std::optional<Expected> {
         return Expected{in[0] - std::floor(in[0]), 1.0};
     }},
    {"Abs",
     {value1},
     exact,
     [](const Arguments& in) -> std::optional<Expected> { return Rounded(std::abs(in[0])); }},
};

/// A way to use a function. Ports are named by the bits of masks.
struct Use
{
    std::size_t Count = 1;
    unsigned Connected = ~0u;
    unsigned Narrow = 0; ///< fed with one component, whatever Count is
    const char* Precision = "float";
    const char* Level = "Automatic";
};

class MathsNumbers : public NumbersTest
{
protected:
    static constexpr std::size_t caseCount = 768;

    static bool IsConnected(const MathsFunction& function, const Use& use, std::size_t port)
    {
        return !function.Ports[port].Property || (use.Connected >> port & 1u) != 0;
    }

    static bool IsNarrow(const MathsFunction& function, const Use& use, std::size_t port)
    {
        return function.Ports[port].IsScalar || (use.Narrow >> port & 1u) != 0;
    }

    static std::string WriteMaterial(const MathsFunction& function, const Use& use)
    {
        std::string node =
            Compose("node CoreMaths; Function=", function.Name, "; Execution Level=", use.Level);
        std::string rest = Compose("sink Sink:", use.Precision, "\nnode.out_value -> sink.in_0\n");
        for (std::size_t i = 0; i < function.Ports.size(); ++i) {
            const Port& port = function.Ports[i];
            if (port.Property)
                node += Compose("; ", port.Property, "=", Show(port.Default));
            if (!IsConnected(function, use, i))
                continue;
            rest += Compose("feed", i, " Feed:", IsNarrow(function, use, i) ? 1 : use.Count, "\n");
            rest += Compose("feed", i, ".read -> node.", port.Name, "\n");
        }
        return node + "\n" + rest;
    }

    static RunInputs MakeInputs(const MathsFunction& function, const Use& use)
    {
        RunInputs inputs;
        for (std::size_t i = 0; i < function.Ports.size(); ++i) {
            if (IsConnected(function, use, i))
                inputs.Streams[Compose("feed", i)] =
                    MakeValues(static_cast<std::uint32_t>(i + 1), caseCount);
        }
        // Now and then two inputs are the same.
        for (std::size_t i = 0; i < caseCount; i += 7) {
            const auto first = inputs.Streams.find("feed0");
            for (auto& [name, values] : inputs.Streams) {
                if (first != inputs.Streams.end())
                    values[i] = first->second[i];
            }
        }
        return inputs;
    }

    static Arguments ReadArguments(const MathsFunction& function, const Use& use,
                                   const RunInputs& inputs, std::size_t index)
    {
        Arguments arguments{{}, use.Count, 0};
        for (std::size_t i = 0; i < function.Ports.size(); ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                arguments.Ports[i][c] =
                    IsConnected(function, use, i)
                        ? inputs.Streams.at(
                              Compose("feed", i))[index][IsNarrow(function, use, i) ? 0 : c]
                        : function.Ports[i].Default;
            }
        }
        return arguments;
    }

    void Compare(const MathsFunction& function, const Use& use, Comparison& comparison) const
    {
        const std::string material = WriteMaterial(function, use);
        const RunInputs inputs = MakeInputs(function, use);
        const std::vector<Numbers> results = Evaluate(material, inputs);
        for (std::size_t i = 0; i < results.size(); ++i) {
            Arguments arguments = ReadArguments(function, use, inputs, i);
            const std::size_t width = function.GivesScalar ? 1 : use.Count;
            for (arguments.Component = 0; arguments.Component < width; ++arguments.Component) {
                comparison.Check(results[i][arguments.Component], function.Of(arguments), [&] {
                    std::string text = Compose("component ", arguments.Component, " of");
                    for (const auto& [name, values] : inputs.Streams)
                        text += " " + Show(values[i], use.Count);
                    return text + " in\n" + material;
                });
            }
        }
    }
};

TEST_F(MathsNumbers, OfAllCountsAndPrecisions)
{
    for (const MathsFunction& function : mathsFunctions) {
        Comparison comparison(function.Name, function.Allowed);
        for (std::size_t count = 1; count <= 4; ++count) {
            for (const char* precision : {"float", "half"}) {
                Use use;
                use.Count = count;
                use.Precision = precision;
                Compare(function, use, comparison);
            }
        }
    }
}

TEST_F(MathsNumbers, OfInputsWithoutEdges)
{
    for (const MathsFunction& function : mathsFunctions) {
        Comparison comparison(function.Name, function.Allowed);
        Use use;
        use.Connected = 0;
        for (const char* precision : {"float", "half"}) {
            use.Precision = precision;
            Compare(function, use, comparison);
        }
        use.Count = 3;
        for (std::size_t port = 0; port < function.Ports.size(); ++port) {
            use.Precision = port % 2 == 0 ? "float" : "half";
            use.Connected = ~(1u << port);
            const bool isWideLeft = [&] {
                for (std::size_t i = 0; i < function.Ports.size(); ++i) {
                    if (i != port && !function.Ports[i].IsScalar)
                        return true;
                }
                return false;
            }();
            if (isWideLeft)
                Compare(function, use, comparison);
        }
    }
}

TEST_F(MathsNumbers, OfNumbersBesideVectors)
{
    for (const MathsFunction& function : mathsFunctions) {
        Comparison comparison(function.Name, function.Allowed);
        Use use;
        use.Count = 3;
        const auto wide = std::count_if(function.Ports.begin(), function.Ports.end(),
                                        [](const Port& port) { return !port.IsScalar; });
        for (std::size_t port = 0; port < function.Ports.size() && wide > 1; ++port) {
            if (function.Ports[port].IsScalar)
                continue;
            use.Narrow = 1u << port;
            Compare(function, use, comparison);
        }
        if (wide <= 1)
            Compare(function, use, comparison);
    }
}

TEST_F(MathsNumbers, OfForcedStages)
{
    for (const MathsFunction& function : mathsFunctions) {
        Comparison comparison(function.Name, function.Allowed);
        Use use;
        use.Count = 3;
        for (const char* level : {"Vertex", "Fragment"}) {
            use.Level = level;
            Compare(function, use, comparison);
        }
    }
}

} // namespace
