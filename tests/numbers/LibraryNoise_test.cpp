#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

using Mox::Materials::Compose;

namespace {

constexpr Tolerance blended = {64.0, "a blend of eight corners by a polynomial of degree five"};

/// The third is a corner of a cell; the second lies beyond the period of the noise.
const std::vector<Numbers> noisePoints = {
    {0.40625f, 1.28125f, -0.71875f}, {2.09375f, -0.15625f, 71.84375f}, {0.5f, -1.25f, 0.75f}};

struct NoiseCase
{
    const char* Function;
    const char* Dimensions;
    int Octaves;
    std::array<float, 3> Values; ///< at the points, computed in double precision
};

constexpr NoiseCase noiseCases[] = {
    {"Value", "2D", 1, {0.1933609f, 0.3379786f, 0.5795848f}},
    {"Value", "2D", 3, {0.3906620f, 0.3480900f, 0.4797331f}},
    {"Value", "3D", 1, {0.2242394f, 0.4209428f, 0.5311419f}},
    {"Value", "3D", 3, {0.3754222f, 0.3499538f, 0.4050914f}},
    {"Gradient", "2D", 1, {0.5653902f, 0.4362512f, 0.5000000f}},
    {"Gradient", "2D", 3, {0.5110070f, 0.4712972f, 0.5000000f}},
    {"Gradient", "3D", 1, {0.3652767f, 0.6018888f, 0.5000000f}},
    {"Gradient", "3D", 3, {0.4095951f, 0.5367678f, 0.5000000f}},
    {"Cellular", "2D", 1, {0.6888022f, 0.3634788f, 0.5552151f}},
    {"Cellular", "2D", 3, {0.4540599f, 0.4237337f, 0.5478433f}},
    {"Cellular", "3D", 1, {0.7178204f, 0.3080906f, 0.6444608f}},
    {"Cellular", "3D", 3, {0.5798663f, 0.3465178f, 0.5452067f}},
};

using NoiseNumbers = NumbersTest;

TEST_F(NoiseNumbers, OfEveryKindInOneAndMoreOctaves)
{
    RunInputs inputs;
    inputs.Streams["feed"] = noisePoints;
    for (const auto& [function, dimensions, octaves, values] : noiseCases) {
        const bool isFlat = std::string(dimensions) == "2D";
        Comparison comparison(Compose(function, " Noise, ", dimensions, ", ", octaves), blended);
        Compare(
            Compose("node NoiseFractal; Function=", function, "; Dimensions=", dimensions,
                    "; Octaves=", octaves, "; Default Scale=4; Gain=0.5; Lacunarity=2\nfeed Feed:",
                    isFlat ? 2 : 3, "\nfeed.read -> node.", isFlat ? "in_uv" : "in_position", "\n",
                    WriteSink("float", "out_value")),
            inputs, 1,
            [&, expected = values](std::size_t i, std::size_t) {
                return Expected{expected[i], 1.0};
            },
            comparison);
    }
}

} // namespace
