#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <cmath>

using Mox::Materials::Compose;

namespace {

std::string WriteMaterial(int rows, int columns, const std::string& settings)
{
    return Compose("frame Feed:1\nnode CoreAnimatedUv; Rows=", rows, "; Columns=", columns, "; ",
                   settings, "\nframe.read -> node.in_frame\n");
}

/// Outputs at the texture coordinates 1/2 and 1/4. Columns continue without bounds, and the texture
/// repeats.
struct FrameCase
{
    int Rows;
    int Columns;
    float Frame;
    const char* Mode;
    const char* Ports;
    Numbers Values;
};

constexpr FrameCase frameCases[] = {
    {4, 4, 5.5f, "Basic", "out_uv1 out_uv2", {1.375f, 0.3125f, 1.625f, 0.3125f}},
    {2, 8, 7.25f, "Basic", "out_uv1 out_uv2", {0.9375f, 0.125f, 1.0625f, 0.625f}},
    {2, 4, -0.25f, "Basic", "out_uv1 out_uv2", {-0.125f, -0.375f, 0.125f, 0.125f}},
    {5, 5, 9.75f, "Basic", "out_uv1 out_uv2", {1.9f, 0.25f, 2.1f, 0.45f}},
    {5, 5, 9.75f, "Basic", "out_blend", {0.75f}},
    {4, 4, 5.5f, "Advanced", "out_offset1 out_offset2", {5.0f, 1.0f, 6.0f, 1.0f}},
    {2, 8, 5.5f, "Advanced", "out_scale", {0.125f, 0.5f}},
    {2, 8, -0.25f, "Advanced", "out_blend", {0.75f}},
};

using AnimatedUvNumbers = NumbersTest;

TEST_F(AnimatedUvNumbers, OfAllOutputs)
{
    Comparison comparison("Animated Uv", {4.0, "a sum and a product"});
    for (const auto& [rows, columns, frame, mode, ports, values] : frameCases) {
        RunInputs inputs;
        inputs.Streams["frame"].push_back({frame});
        inputs.Streams["uv"].push_back({0.5f, 0.25f});
        const std::string feed =
            mode == std::string("Basic") ? "uv Feed:2\nuv.read -> node.in_uv\n" : "";
        for (const char* level : {"; Execution Level=Vertex", "; Execution Level=Fragment"}) {
            for (const char* precision : {"float", "half"})
                Compare(
                    WriteMaterial(rows, columns, Compose("Mode=", mode, level)) + feed +
                        WriteSink(precision, ports),
                    inputs, values.size(),
                    [&, expected = values](std::size_t, std::size_t at) {
                        return Expected{expected[at], 1.0 + std::abs(expected[at])};
                    },
                    comparison);
        }
    }
}

/// Documents where six digits are too few: entire rows, starting with the first one. A change here
/// affects artists, so the expected values are listed.
TEST_F(AnimatedUvNumbers, TakeTheFirstFrameOfARowForTheLastRowsWhereSixDigitsFallShort)
{
    for (const int columns : {3, 7, 9, 12}) {
        RunInputs inputs;
        const auto first = static_cast<float>(columns);
        inputs.Streams["frame"] = {{first - 1.0f}, {first}, {first + 0.25f}, {2.0f * first}};
        const std::vector<Numbers> results = Evaluate(
            WriteMaterial(1, columns, "Mode=Advanced") + WriteSink("float", "out_offset1"), inputs);
        ASSERT_EQ(results.size(), 4u);
        const std::array<float, 4> rows = {results[0][1], results[1][1], results[2][1],
                                           results[3][1]};
        EXPECT_EQ(rows, (std::array{0.0f, 0.0f, 1.0f, 1.0f})) << columns;
    }
}

TEST_F(AnimatedUvNumbers, OfInputsWithoutEdges)
{
    const std::vector<Numbers> results =
        Evaluate("node CoreAnimatedUv\n" + WriteSink("float", "out_uv1 out_uv2"), {});
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0], (Numbers{0.0f, 0.0f, 0.25f, 0.0f}));
}

} // namespace
