#include "mox/document/MaterialDocument.h"
#include "tests/numbers/NumbersTest.h"
#include "tests/support/BuildTree.h"

#include <cmath>
#include <numbers>

using namespace Mox::Host;

namespace {

constexpr std::size_t side = 48; ///< samples in each of two dimensions
constexpr double directBound = 0.015;

struct Vector
{
    double X, Y, Z;
};

Vector Scale(const Vector& v, double factor)
{
    return {v.X * factor, v.Y * factor, v.Z * factor};
}

double Dot(const Vector& a, const Vector& b)
{
    return a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}

Vector Normalise(const Vector& v)
{
    return Scale(v, 1.0 / std::sqrt(Dot(v, v)));
}

/// A direction to the light and its weight.
struct Sample
{
    Vector Light;
    double Size;
};

/// Samples directions with a density that follows the light reflected by a rough mirror to the eye.
std::vector<Sample> SampleLights(double roughness, double cosine)
{
    const double alpha = roughness * roughness;
    const Vector view{std::sqrt(1.0 - cosine * cosine), 0.0, cosine};
    const Vector stretched = Normalise({alpha * view.X, 0.0, view.Z});
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < side * side; ++i) {
        const std::size_t row = i / side;
        const double column = static_cast<double>(i % side) + (row % 2 == 0 ? 0.25 : 0.75);
        const double radius = std::sqrt((static_cast<double>(row) + 0.5) / side);
        const double angle = 2.0 * std::numbers::pi * column / side;
        const double x = radius * std::cos(angle);
        const double lift = 0.5 * (1.0 + stretched.Z);
        const double y = (1.0 - lift) * std::sqrt(1.0 - x * x) + lift * radius * std::sin(angle);
        const double z = std::sqrt(std::max(0.0, 1.0 - x * x - y * y));
        const Vector middle = Normalise({alpha * (z * stretched.X - y * stretched.Z), alpha * x,
                                         std::max(0.0, y * stretched.X + z * stretched.Z)});
        const double toMiddle = Dot(view, middle);
        const Vector light{2.0 * toMiddle * middle.X - view.X, 2.0 * toMiddle * middle.Y,
                           2.0 * toMiddle * middle.Z - view.Z};
        if (light.Z <= 0.0)
            continue;
        const double spread = middle.Z * middle.Z * (alpha * alpha - 1.0) + 1.0;
        const double seen =
            2.0 * cosine /
            (cosine + std::sqrt(alpha * alpha + (1.0 - alpha * alpha) * cosine * cosine));
        const double density =
            seen * alpha * alpha / (4.0 * cosine * std::numbers::pi * spread * spread);
        samples.push_back({light, 1.0 / (density * std::numbers::pi * side * side)});
    }
    return samples;
}

/// The environment's code with an additional output for the results of its functions.
Environment MakeProbe()
{
    const ShaderType scalar(ComponentType::Float, 1, 1, 1);
    const ShaderType vector(ComponentType::Float, 3, 1, 1);
    Environment environment = ReadEnvironment(MOX_NUMBERS_ENVIRONMENT);
    environment.Code = TestEnvironment().Code;
    EnvironmentEntry& output = environment.Outputs.back();
    output.Inputs = {{"in_light", vector, EnvironmentSource::Stream, "light", {}},
                     {"in_view", vector, EnvironmentSource::Stream, "view", {}},
                     {"in_roughness", scalar, EnvironmentSource::Stream, "roughness", {}}};
    output.Body =
        "float3 up = float3( 0.0, 0.0, 1.0 );\n"
        "float2 reflected = MoxReflected( in_view.z, in_roughness );\n"
        "float3 bounces = MoxBounces( float3( 1.0, 1.0, 1.0 ), reflected );\n"
        "out_value = float4( MoxMirror( up, in_view, in_light, in_roughness ), reflected, "
        "bounces.x );\n";
    return environment;
}

using Physical = NumbersTest;

/// In uniform light, a white mirror of any roughness must reflect all the light it receives, seen
/// from any direction. The integral of the light reflected in one bounce must match MoxReflected's
/// approximation.
TEST_F(Physical, AWhiteMirrorLosesNoLight)
{
    const Environment environment = MakeProbe();
    double worst = 0.0;
    for (const double roughness : {0.1, 0.2, 0.35, 0.5, 0.65, 0.8, 0.9, 1.0}) {
        for (const double cosine : {0.1, 0.25, 0.5, 0.75, 1.0}) {
            SCOPED_TRACE(testing::Message() << "roughness " << roughness << ", cosine " << cosine);
            const std::vector<Sample> samples = SampleLights(roughness, cosine);
            RunInputs inputs;
            for (const Sample& sample : samples) {
                inputs.Streams["light"].push_back({static_cast<float>(sample.Light.X),
                                                   static_cast<float>(sample.Light.Y),
                                                   static_cast<float>(sample.Light.Z)});
                inputs.Streams["view"].push_back(
                    {static_cast<float>(std::sqrt(1.0 - cosine * cosine)), 0.0f,
                     static_cast<float>(cosine)});
                inputs.Streams["roughness"].push_back({static_cast<float>(roughness)});
            }
            const std::vector<Numbers> results =
                Get().Evaluate(MaterialDocument(), environment, inputs);
            double once = 0.0;
            for (std::size_t i = 0; i < samples.size(); ++i)
                once += samples[i].Size * results[i][0];
            EXPECT_NEAR(results.front()[1] / once, 1.0, directBound);
            EXPECT_NEAR(once * results.front()[3], 1.0, directBound);
            worst = std::max(worst, std::abs(once * results.front()[3] - 1.0));
            // The integral is known here: one minus the logarithm of two.
            if (roughness == 1.0 && cosine == 1.0) {
                EXPECT_NEAR(once, 1.0 - std::numbers::ln2, 0.001);
            }
        }
    }
    RecordProperty("worst", std::to_string(worst));
}

} // namespace
