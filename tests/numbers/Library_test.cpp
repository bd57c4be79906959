#include "tests/numbers/FunctionNumbers.h"

#include <algorithm>
#include <cmath>

namespace {

const Port wide1 = {"in_value1"};
const Port wide2 = {"in_value2"};

constexpr Tolerance ratio = {4.0, "a quotient of 2.5 steps"};
constexpr Tolerance wave = {16.0, "a polynomial, or two of them and a quotient"};
constexpr Tolerance inverse = {4096.0, "devices compute inverse tangents to 4096 steps"};
constexpr Tolerance exponential = {8.0, "3 steps, and twice the exponent"};
constexpr Tolerance logarithm = {8.0, "3 steps, or 2^-21 near one"};
constexpr Tolerance product = {8.0, "products and sums of the scale's size, and a root"};

/// The sine of a large number depends on its last bits.
Result Wave(double (*function)(double), double x)
{
    return std::abs(x) > 4.0 ? std::nullopt : OfScale(1.0, function(x));
}

Result Tangent(In in)
{
    // Both operands have an absolute error, so the quotient is undefined where the cosine is small.
    const double cosine = std::cos(in[0]);
    if (std::abs(cosine) < 0.125 || std::abs(in[0]) > 4.0)
        return std::nullopt;
    return OfScale(1.0 / (cosine * cosine) + std::abs(std::tan(in[0])), std::tan(in[0]));
}

Result ArcTangent2(In in)
{
    // The angle is undefined at the origin and ambiguous on the negative axis.
    if (in[1] == 0.0 || (in[0] == 0.0 && in[1] <= 0.0))
        return std::nullopt;
    return OfScale(3.15, std::atan2(in[0], in[1]));
}

const Function trigonometry[] = {
    {"Sine", {value1}, wave, [](In in) { return Wave(std::sin, in[0]); }},
    {"Cosine", {value1}, wave, [](In in) { return Wave(std::cos, in[0]); }},
    {"Tangent", {value1}, wave, Tangent},
    {"Arc Sine",
     {value1},
     inverse,
     [](In in) { return OfScale(1.6, std::asin(std::clamp(in[0], -1.0, 1.0))); }},
    {"Arc Cosine",
     {value1},
     inverse,
     [](In in) { return OfScale(3.15, std::acos(std::clamp(in[0], -1.0, 1.0))); }},
    {"Arc Tangent", {value1}, inverse, [](In in) { return OfScale(1.6, std::atan(in[0])); }},
    {"Arc Tangent 2", {value1, value2}, inverse, ArcTangent2},
};

/// The result is discontinuous where the quotient is an integer, so values close to that are
/// excluded.
Result Modulo(In in)
{
    const double share = in[0] / in[1];
    if (in[1] == 0.0 || std::abs(share - std::round(share)) < 1e-3)
        return std::nullopt;
    return OfScale(std::abs(in[0]) + std::abs(in[1]), in[0] - in[1] * std::floor(share));
}

Result Exponential(double base, double x)
{
    const double value = std::pow(base, x);
    return OfScale(value * (1.0 + 2.0 * std::abs(x)), value);
}

/// @param base of the logarithm
Result Logarithm(double base, double x)
{
    if (x <= 0.0)
        return std::nullopt;
    const double value = std::log(x) / std::log(base);
    return OfScale(1.0 + std::abs(value), value);
}

const Function arithmetic[] = {
    {"Divide",
     {value1, value2},
     ratio,
     [](In in) { return in[1] == 0.0 ? std::nullopt : Rounded(in[0] / in[1]); }},
    {"Modulo", {value1, value2}, ratio, Modulo},
    {"Reciprocal",
     {value1},
     ratio,
     [](In in) { return in[0] == 0.0 ? std::nullopt : Rounded(1.0 / in[0]); }},
    {"Negate", {value1}, exact, [](In in) { return Rounded(-in[0]); }},
    {"Square Root",
     {value1},
     ratio,
     [](In in) { return Rounded(std::sqrt(std::max(in[0], 0.0))); }},
    {"Inverse Square Root",
     {value1},
     ratio,
     [](In in) { return in[0] <= 0.0 ? std::nullopt : Rounded(1.0 / std::sqrt(in[0])); }},
    {"Exponent", {value1}, exponential, [](In in) { return Exponential(std::exp(1.0), in[0]); }},
    {"Exponent 2", {value1}, exponential, [](In in) { return Exponential(2.0, in[0]); }},
    {"Logarithm", {value1}, logarithm, [](In in) { return Logarithm(std::exp(1.0), in[0]); }},
    {"Logarithm 2", {value1}, logarithm, [](In in) { return Logarithm(2.0, in[0]); }},
    {"Minimum", {value1, value2}, exact, [](In in) { return Rounded(std::min(in[0], in[1])); }},
    {"Maximum", {value1, value2}, exact, [](In in) { return Rounded(std::max(in[0], in[1])); }},
    {"Step", {value1, value2}, exact, [](In in) { return Rounded(in[0] >= in[1] ? 1.0 : 0.0); }},
    {"Sign",
     {value1},
     exact,
     [](In in) {
         return Rounded(in[0] > 0.0 ? 1.0 : in[0] < 0.0 ? -1.0 : 0.0);
     }},
    // A number just below one half may be rounded up to it before truncation.
    {"Round",
     {value1},
     exact,
     [](In in) {
         return in[0] == std::nextafter(0.5f, 0.0f) ? std::nullopt
                                                    : Rounded(std::floor(in[0] + 0.5));
     }},
    {"Truncate", {value1}, exact, [](In in) { return Rounded(std::trunc(in[0])); }},
};

double Dot(In in, std::size_t a, std::size_t b, std::size_t count)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < count; ++i)
        sum += in.Ports[a][i] * in.Ports[b][i];
    return sum;
}

double SizeOf(In in, std::size_t port, std::size_t count)
{
    return std::sqrt(Dot(in, port, port, count));
}

Result Normalise(In in)
{
    const double size = SizeOf(in, 0, in.Count);
    return OfScale(1.0, size == 0.0 ? 0.0 : in[0] / size);
}

Result Distance(In in)
{
    double sum = 0.0;
    double scale = 0.0;
    for (std::size_t i = 0; i < in.Count; ++i) {
        const double difference = in.Ports[0][i] - in.Ports[1][i];
        sum += difference * difference;
        scale += std::abs(in.Ports[0][i]) + std::abs(in.Ports[1][i]);
    }
    return OfScale(scale, std::sqrt(sum));
}

Result Cross(In in)
{
    const std::size_t next = (in.Component + 1) % 3;
    const std::size_t last = (in.Component + 2) % 3;
    const double first = in.Ports[0][next] * in.Ports[1][last];
    const double second = in.Ports[0][last] * in.Ports[1][next];
    return OfScale(std::abs(first) + std::abs(second), first - second);
}

double MirrorScale(In in)
{
    return SizeOf(in, 0, 3) * (1.0 + SizeOf(in, 1, 3) * SizeOf(in, 1, 3));
}

Result Reflect(In in)
{
    return OfScale(2.0 * MirrorScale(in), in[0] - 2.0 * Dot(in, 0, 1, 3) * in[1]);
}

Result Refract(In in)
{
    const double facing = Dot(in, 0, 1, 3);
    const double index = in[2];
    const double rest = 1.0 - index * index * (1.0 - facing * facing);
    const double size = 1.0 + index * index * (1.0 + MirrorScale(in) * MirrorScale(in));
    if (std::abs(rest) < 1e-3 * size)
        return std::nullopt; // the root of a number near zero
    if (rest < 0.0)
        return OfScale(1.0, 0.0);
    const double root = std::sqrt(rest);
    return OfScale((1.0 + std::abs(index)) * MirrorScale(in) + size / root * std::abs(in[1]),
                   index * in[0] - (index * facing + root) * in[1]);
}

const Port vector1 = {"in_vector1", "", 0.0, Kind::Vector};
const Port vector2 = {"in_vector2", "", 0.0, Kind::Vector};
const Port direction = {"in_direction", "", 0.0, Kind::Vector};
const Port normal = {"in_normal", "", 0.0, Kind::Vector};
const Port index = {"in_index", "Default Index", 0.625, Kind::Scalar};

const Function vectorMaths[] = {
    {"Normalise", {wide1}, product, Normalise},
    {"Length", {wide1}, product, [](In in) { return Rounded(SizeOf(in, 0, in.Count)); }, 1},
    {"Distance", {wide1, wide2}, product, Distance, 1},
    {"Cross Product", {vector1, vector2}, product, Cross, 3},
    {"Reflect", {direction, normal}, product, Reflect, 3},
    {"Refract", {direction, normal, index}, product, Refract, 3},
};

TEST_F(FunctionNumbers, OfTrigonometry)
{
    CompareAll("MathsTrigonometry; Function=", trigonometry);
}

TEST_F(FunctionNumbers, OfArithmetic)
{
    CompareAll(
        "MathsArithmetic; Function=", arithmetic,
        {{.Settings = "; Execution Level=Vertex"}, {.Settings = "; Execution Level=Fragment"}});
}

TEST_F(FunctionNumbers, OfVectorMaths)
{
    CompareAll("VectorMaths; Function=", vectorMaths);
}

} // namespace
