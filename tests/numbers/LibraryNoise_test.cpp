#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <algorithm>
#include <cmath>
#include <random>

using Mox::Materials::Compose;

namespace {

using Triple = std::array<double, 3>;

constexpr Tolerance blended = {64.0, "a blend of eight corners by a polynomial of degree five"};

std::int64_t Wrap(std::int64_t number)
{
    return ((number % 289) + 289) % 289;
}

/// The noise's permutation of integers, computed in integers.
std::int64_t Mix(std::int64_t before, std::int64_t number)
{
    const std::int64_t x = Wrap(before + number);
    return Wrap(x * (34 * x + 1));
}

double Hash(const Triple& cell, int seed)
{
    std::int64_t mixed = Mix(0, seed);
    for (const double at : cell)
        mixed = Mix(mixed, Wrap(static_cast<std::int64_t>(at)));
    return (static_cast<double>(mixed) + 0.5) / 289.0;
}

Triple Floor(const Triple& point)
{
    return {std::floor(point[0]), std::floor(point[1]), std::floor(point[2])};
}

/// Smoothly interpolates the contributions of the corners of a cell at a point.
template <class Corner>
double Blend(const Triple& point, Corner corner)
{
    const Triple cell = Floor(point);
    double sum = 0.0;
    for (int i = 0; i < 8; ++i) {
        const Triple offset = {static_cast<double>(i & 1), static_cast<double>(i >> 1 & 1),
                               static_cast<double>(i >> 2)};
        double weight = 1.0;
        Triple at{};
        Triple arm{};
        for (std::size_t c = 0; c < 3; ++c) {
            const double place = point[c] - cell[c];
            const double share = place * place * place * (place * (place * 6.0 - 15.0) + 10.0);
            weight *= offset[c] > 0.0 ? share : 1.0 - share;
            at[c] = cell[c] + offset[c];
            arm[c] = place - offset[c];
        }
        sum += weight * corner(at, arm);
    }
    return sum;
}

double ValueNoise(const Triple& point)
{
    return Blend(point, [](const Triple& at, const Triple&) { return Hash(at, 0); });
}

double GradientNoise(const Triple& point)
{
    return 0.5 + 0.5 * Blend(point, [](const Triple& at, const Triple& arm) {
                     const Triple slope = {2.0 * Hash(at, 1) - 1.0, 2.0 * Hash(at, 2) - 1.0,
                                           2.0 * Hash(at, 3) - 1.0};
                     const double size = std::max(std::hypot(slope[0], slope[1], slope[2]), 1e-3);
                     return (slope[0] * arm[0] + slope[1] * arm[1] + slope[2] * arm[2]) / size;
                 });
}

/// @param depth 0 if all points lie in one plane, otherwise 1
double CellularNoise(const Triple& point, int depth)
{
    const Triple cell = Floor(point);
    double nearest = 1.0;
    for (int z = -depth; z <= depth; ++z) {
        for (int y = -1; y <= 1; ++y) {
            for (int x = -1; x <= 1; ++x) {
                const Triple other = {cell[0] + x, cell[1] + y, cell[2] + z};
                nearest =
                    std::min(nearest, std::hypot(other[0] + Hash(other, 1) - point[0],
                                                 other[1] + Hash(other, 2) - point[1],
                                                 (other[2] + depth * Hash(other, 3)) - point[2]));
            }
        }
    }
    return nearest;
}

class NoiseNumbers : public NumbersTest
{};

TEST_F(NoiseNumbers, OfEveryKindInOneAndMoreOctaves)
{
    constexpr std::size_t count = 512;
    constexpr double scale = 4.0;
    std::mt19937 random(11);
    RunInputs inputs;
    for (std::size_t i = 0; i < count; ++i) {
        Numbers point{};
        for (float& at : point) // some points lie exactly on cell boundaries
            at = static_cast<float>(random() % 4096) / (i % 3 == 0 ? 4.0f : 512.0f) - 4.0f;
        inputs.Streams["feed"].push_back(point);
    }
    for (const std::string kind : {"Value", "Gradient", "Cellular"}) {
        Comparison comparison(kind + " Noise", blended);
        for (const bool isFlat : {true, false}) {
            for (const int octaves : {1, 3}) {
                const std::string material =
                    Compose("node NoiseFractal; Function=", kind,
                            "; Dimensions=", isFlat ? "2D" : "3D", "; Octaves=", octaves,
                            "; Default Scale=4; Gain=0.5; Lacunarity=2\nfeed Feed:", isFlat ? 2 : 3,
                            "\nfeed.read -> node.", isFlat ? "in_uv" : "in_position", "\n",
                            WriteSink("float", "out_value"));
                Compare(
                    material, inputs, 1,
                    [&](std::size_t i, std::size_t) -> Result {
                        double sum = 0.0;
                        double weight = 1.0;
                        double weights = 0.0;
                        for (int octave = 0; octave < octaves; ++octave, weight *= 0.5) {
                            Triple point{};
                            for (std::size_t c = 0; c < (isFlat ? 2u : 3u); ++c)
                                point[c] = inputs.Streams["feed"][i][c] * scale *
                                           static_cast<double>(1 << octave);
                            sum += weight * (kind == "Value"      ? ValueNoise(point)
                                             : kind == "Gradient" ? GradientNoise(point)
                                                                  : CellularNoise(point, !isFlat));
                            weights += weight;
                        }
                        return Expected{sum / weights, 1.0};
                    },
                    comparison);
            }
        }
    }
}

} // namespace
