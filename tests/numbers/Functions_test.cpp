#include "tests/numbers/FunctionNumbers.h"

#include <algorithm>
#include <cmath>

namespace {

Result Mix(double a, double b, double share)
{
    return OfScale((std::abs(a) + std::abs(b)) * (1.0 + std::abs(share)),
                   (1.0 - share) * a + share * b);
}

Result Clamp(In in)
{
    return in[1] > in[2] ? std::nullopt : Rounded(std::clamp(in[0], in[1], in[2]));
}

Result Range(In in)
{
    if (in[3] == in[4])
        return std::nullopt;
    return Mix(in[1], in[2], Saturate((in[0] - in[3]) / (in[4] - in[3])));
}

Result SmoothStep(In in)
{
    const double x = Saturate(in[2]);
    return Mix(in[0], in[1], 3.0 * x * x - 2.0 * x * x * x);
}

Result Choose(In in)
{
    return Rounded(in[2] < in[3] ? in[0] : in[1]);
}

Result Frac(In in)
{
    return OfScale(1.0, in[0] - std::floor(in[0]));
}

Result DotProduct(In in)
{
    Expected sum{0.0, 0.0};
    for (std::size_t i = 0; i < in.Count; ++i) {
        const double product = in.Ports[0][i] * in.Ports[1][i];
        sum = {sum.Value + product, sum.Scale + std::abs(product)};
    }
    return sum;
}

Result Fresnel(In in)
{
    const Result raised = Power(Saturate(1.0 - in[0]), in[3]);
    if (!raised)
        return std::nullopt;
    return OfScale(std::abs(in[1]) + std::abs(in[2]) * raised->Scale,
                   in[1] + in[2] * raised->Value);
}

/// Screen blending of a and b: 1 - ( 1 - a )( 1 - b ).
double Screen(double a, double b)
{
    return a + b - a * b;
}

/// The magnitude of the terms in a product of a and b or of their complements.
double Size(double a, double b)
{
    return (1.0 + std::abs(a)) * (1.0 + std::abs(b));
}

Result Exclusion(In in)
{
    return OfScale(Size(in[0], in[1]), in[0] * (1.0 - in[1]) + in[1] * (1.0 - in[0]));
}

/// Darkens the lower layer below one half and lightens it above, by twice the other layer's value;
/// one half leaves it unchanged.
Result Contrast(double decider, double other)
{
    return OfScale(2.0 * Size(decider, other),
                   decider < 0.5 ? 2.0 * decider * other : Screen(2.0 * decider - 1.0, other));
}

/// The result is undefined where the divisor is zero.
Result Dodge(double a, double b)
{
    return b == 1.0 ? std::nullopt : Rounded(a / (1.0 - b));
}

Result Burn(double a, double b)
{
    const double quotient = (1.0 - a) / b;
    return b == 0.0 ? std::nullopt : OfScale(1.0 + std::abs(quotient), 1.0 - quotient);
}

Result VividLight(double a, double b)
{
    return b < 0.5 ? Burn(a, 2.0 * b) : Dodge(a, 2.0 * b - 1.0);
}

const Port minimum = {"in_min", "Default Min", -0.5};
const Port maximum = {"in_max", "Default Max", 1.25};
const Port oldMinimum = {"in_oldmin", "Default Old Min", 0.125};
const Port oldMaximum = {"in_oldmax", "Default Old Max", 2.5};
const Port blend = {"in_blend", "Default Blend", 0.25, Kind::Scalar};
const Port test1 = {"in_test1", "Default Test 1", 0.5, Kind::Scalar};
const Port test2 = {"in_test2", "Default Test 2", 0.75, Kind::Scalar};
const Port power = {"in_power", "Default Power", 2.5, Kind::Scalar};
const Port scale = {"in_scale", "Default Scale", 1.5};
const Port facing = {"in_facing", "", 0.0, Kind::Connected};

const Ports twoValues = {value1, value2};
const Ports mixture = {value1, value2, blend};
const Ports layers = {{"in_value1"}, {"in_value2"}};

constexpr Tolerance below1 = {1.0, "one rounding at most, of numbers below one"};
constexpr Tolerance mixed = {4.0, "a product and two sums of the scale's size"};
constexpr Tolerance summed = {4.0, "four products and three sums of the scale's size"};
constexpr Tolerance several = {4.0, "up to five roundings of at most the scale's size"};
constexpr Tolerance quotient = {4.0, "a quotient of 2.5 steps and a rounding on either side"};
constexpr Tolerance divided = {8.0, "a quotient of 2.5 steps before two roundings"};
constexpr Tolerance smoothed = {8.0, "a cubic before the mixture"};

const Function mathsFunctions[] = {
    {"Multiply", twoValues, once, [](In in) { return Rounded(in[0] * in[1]); }},
    {"Addition", twoValues, once, [](In in) { return Rounded(in[0] + in[1]); }},
    {"Subtraction", twoValues, once, [](In in) { return Rounded(in[0] - in[1]); }},
    {"Invert", {value1}, once, [](In in) { return Rounded(1.0 - in[0]); }},
    {"Power", {value1, power}, powered, [](In in) { return Power(in[0], in[1]); }},
    {"Clamp", {value1, minimum, maximum}, exact, Clamp},
    {"Range", {value1, minimum, maximum, oldMinimum, oldMaximum}, divided, Range},
    {"Lerp", mixture, mixed, [](In in) { return Mix(in[0], in[1], in[2]); }},
    {"SmoothStep", mixture, smoothed, SmoothStep},
    {"Compare", {value1, value2, test1, test2}, exact, Choose},
    {"Dot Product", twoValues, summed, DotProduct, 1},
    {"Fresnel", {facing, minimum, scale, power}, powered, Fresnel, 1},
    {"Ceil", {value1}, exact, [](In in) { return Rounded(std::ceil(in[0])); }},
    {"Floor", {value1}, exact, [](In in) { return Rounded(std::floor(in[0])); }},
    {"Frac", {value1}, below1, Frac},
    {"Abs", {value1}, exact, [](In in) { return Rounded(std::abs(in[0])); }},
};

const Function blendModes[] = {
    {"Darken", layers, exact, [](In in) { return Rounded(std::min(in[0], in[1])); }},
    {"Lighten", layers, exact, [](In in) { return Rounded(std::max(in[0], in[1])); }},
    {"Multiply", layers, once, [](In in) { return Rounded(in[0] * in[1]); }},
    {"Screen", layers, several,
     [](In in) { return OfScale(Size(in[0], in[1]), Screen(in[0], in[1])); }},
    {"Overlay", layers, several, [](In in) { return Contrast(in[0], in[1]); }},
    {"Colour Dodge", layers, quotient, [](In in) { return Dodge(in[0], in[1]); }},
    {"Colour Burn", layers, quotient, [](In in) { return Burn(in[0], in[1]); }},
    {"Hard Light", layers, several, [](In in) { return Contrast(in[1], in[0]); }},
    {"Vivid Light", layers, quotient, [](In in) { return VividLight(in[0], in[1]); }},
    {"Difference", layers, once, [](In in) { return Rounded(std::abs(in[0] - in[1])); }},
    {"Exclusion", layers, several, Exclusion},
};

TEST_F(FunctionNumbers, OfMaths)
{
    CompareAll(
        "CoreMaths; Function=", mathsFunctions,
        {{.Settings = "; Execution Level=Vertex"}, {.Settings = "; Execution Level=Fragment"}});
}

TEST_F(FunctionNumbers, OfLayerBlend)
{
    CompareAll("CoreLayerBlend; Mode=", blendModes);
}

} // namespace
