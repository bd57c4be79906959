#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <algorithm>
#include <cmath>

using Mox::Materials::Compose;

namespace {

using Reference = std::optional<Expected> (*)(double a, double b);

struct BlendMode
{
    const char* Name;
    Tolerance Allowed;
    Reference Of;
};

/// a and b over each other: 1 - ( 1 - a )( 1 - b ).
double Screen(double a, double b)
{
    return a + b - a * b;
}

/// The size of what a product of a and b, or of their inverses, is made of.
double Size(double a, double b)
{
    return (1.0 + std::abs(a)) * (1.0 + std::abs(b));
}

/// Below one half the lower layer is darkened, from there on lightened; by twice the other's value,
/// so that one half leaves it as it is.
std::optional<Expected> Contrast(double decider, double other)
{
    const double value = decider < 0.5 ? 2.0 * decider * other : Screen(2.0 * decider - 1.0, other);
    return Expected{value, 2.0 * Size(decider, other)};
}

/// A layer by which nothing can be divided leaves the result open.
std::optional<Expected> Dodge(double a, double b)
{
    if (b == 1.0)
        return std::nullopt;
    const double value = a / (1.0 - b);
    return Expected{value, std::abs(value)};
}

std::optional<Expected> Burn(double a, double b)
{
    if (b == 0.0)
        return std::nullopt;
    const double quotient = (1.0 - a) / b;
    return Expected{1.0 - quotient, 1.0 + std::abs(quotient)};
}

constexpr Tolerance exact = {0.0, "nothing is rounded"};
constexpr Tolerance once = {1.0, "one rounding, which may go either way"};
constexpr Tolerance several = {4.0, "up to five roundings of at most the scale's size"};
constexpr Tolerance divided = {4.0, "a quotient of 2.5 steps and a rounding on either side"};

const BlendMode blendModes[] = {
    {"Darken", exact,
     [](double a, double b) -> std::optional<Expected> {
         return Expected{std::min(a, b), 1.0};
     }},
    {"Lighten", exact,
     [](double a, double b) -> std::optional<Expected> {
         return Expected{std::max(a, b), 1.0};
     }},
    {"Multiply", once,
     [](double a, double b) -> std::optional<Expected> {
         return Expected{a * b, std::abs(a * b)};
     }},
    {"Screen", several,
     [](double a, double b) -> std::optional<Expected> {
         return Expected{Screen(a, b), Size(a, b)};
     }},
    {"Overlay", several, [](double a, double b) { return Contrast(a, b); }},
    {"Colour Dodge", divided, Dodge},
    {"Colour Burn", divided, Burn},
    {"Hard Light", several, [](double a, double b) { return Contrast(b, a); }},
    {"Vivid Light", divided,
     [](double a, double b) { return b < 0.5 ? Burn(a, 2.0 * b) : Dodge(a, 2.0 * b - 1.0); }},
    {"Difference", once,
     [](double a, double b) -> std::optional<Expected> {
         return Expected{std::abs(a - b), std::abs(a - b)};
     }},
    {"Exclusion", several,
     [](double a, double b) -> std::optional<Expected> {
         return Expected{a * (1.0 - b) + b * (1.0 - a), Size(a, b)};
     }},
};

/// How many components each layer has; of none it is not connected.
struct Widths
{
    std::size_t A;
    std::size_t B;
};

class LayerBlendNumbers : public NumbersTest
{
protected:
    void Compare(const BlendMode& mode, const Widths& widths, const char* precision,
                 Comparison& comparison) const
    {
        constexpr std::size_t caseCount = 768;
        std::string material =
            Compose("node CoreLayerBlend; Mode=", mode.Name, "\nsink Sink:", precision,
                    "\nnode.out_value -> sink.in_0\n");
        RunInputs inputs;
        const auto feed = [&](const char* name, const char* port, std::size_t width,
                              std::uint32_t seed) {
            if (width == 0)
                return;
            material += Compose(name, " Feed:", width, "\n", name, ".read -> node.", port, "\n");
            inputs.Streams[name] = MakeValues(seed, caseCount);
        };
        feed("a", "in_value1", widths.A, 11);
        feed("b", "in_value2", widths.B, 12);
        const auto valueOf = [&](const char* name, std::size_t width, std::size_t index,
                                 std::size_t component) -> double {
            return width == 0 ? 0.0f : inputs.Streams.at(name)[index][width == 1 ? 0 : component];
        };
        const std::size_t width = std::max({widths.A, widths.B, std::size_t(1)});
        const std::vector<Numbers> results = Evaluate(material, inputs);
        for (std::size_t i = 0; i < results.size(); ++i) {
            for (std::size_t c = 0; c < width; ++c) {
                const double a = valueOf("a", widths.A, i, c);
                const double b = valueOf("b", widths.B, i, c);
                comparison.Check(results[i][c], mode.Of(a, b), [&] {
                    return Compose(Show(a), " and ", Show(b), " in\n", material);
                });
            }
        }
    }
};

TEST_F(LayerBlendNumbers, OfAllCountsAndPrecisions)
{
    for (const BlendMode& mode : blendModes) {
        Comparison comparison(mode.Name, mode.Allowed);
        for (std::size_t count = 1; count <= 4; ++count) {
            for (const char* precision : {"float", "half"})
                Compare(mode, {count, count}, precision, comparison);
        }
    }
}

TEST_F(LayerBlendNumbers, OfOneNumberBesideAVector)
{
    for (const BlendMode& mode : blendModes) {
        Comparison comparison(mode.Name, mode.Allowed);
        Compare(mode, {1, 3}, "float", comparison);
        Compare(mode, {4, 1}, "half", comparison);
    }
}

TEST_F(LayerBlendNumbers, OfLayersWithoutEdges)
{
    for (const BlendMode& mode : blendModes) {
        Comparison comparison(mode.Name, mode.Allowed);
        Compare(mode, {0, 3}, "float", comparison);
        if (std::string(mode.Name) == "Colour Burn" || std::string(mode.Name) == "Vivid Light")
            continue; // divides by the second layer, which is zero then
        Compare(mode, {2, 0}, "half", comparison);
        Compare(mode, {0, 0}, "float", comparison);
    }
}

} // namespace
