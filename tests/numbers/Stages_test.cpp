#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <algorithm>
#include <cmath>

using Mox::Materials::Compose;

namespace {

constexpr std::uint32_t pixels = 96;

/// A material that is tested with its node's level at "Vertex" and at "Fragment".
struct StagedMaterial
{
    const char* Name;
    const char* Node;  ///< the node's line without the level
    const char* Edges; ///< edges to the node from the feed "uv", which runs from 0 to 1 across the
                       ///< image
    const char* Output;
    double Curvature; ///< bound on the second derivative of the result along any line
};

constexpr StagedMaterial stagedMaterials[] = {
    {"Addition", "CoreMaths; Function=Addition; Default Value 2=0.5", "uv.read -> node.in_value1\n",
     "out_value", 0.0},
    {"Product", "CoreMaths; Function=Multiply",
     "uv.read -> node.in_value1\nuv.read -> node.in_value2\n", "out_value", 2.0},
    {"Dot Product", "CoreMaths; Function=Dot Product",
     "uv.read -> node.in_value1\nuv.read -> node.in_value2\n", "out_value", 2.0},
    {"Cube", "CoreMaths; Function=Power; Default Power=3", "uv.read -> node.in_value1\n",
     "out_value", 6.0},
    {"Animated Uv", "CoreAnimatedUv; Rows=2; Columns=4",
     "uv.read -> node.in_uv\nframe Feed:1\nframe.read -> node.in_frame\n", "out_uv1", 0.0},
};

class StageNumbers : public NumbersTest
{
protected:
    static std::vector<Numbers> Draw(const StagedMaterial& staged, const char* level,
                                     std::uint32_t squares)
    {
        const std::string material =
            Compose("uv Feed:2\nnode ", staged.Node, "; Execution Level=", level, "\n",
                    staged.Edges, WriteSink("float", staged.Output));
        RunInputs inputs;
        for (const auto& [x, y] : GridPlaces(squares)) {
            inputs.Streams["uv"].push_back({x, y});
            inputs.Streams["frame"].push_back({5.5f});
        }
        return Get().DrawOnGrid(material, inputs, {squares, pixels});
    }

    /// The largest difference between two images.
    static double Compare(const std::vector<Numbers>& one, const std::vector<Numbers>& other)
    {
        double largest = 0.0;
        for (std::size_t i = 0; i < one.size(); ++i) {
            for (std::size_t c = 0; c < 4; ++c)
                largest = std::max(largest, double(std::abs(one[i][c] - other[i][c])));
        }
        return largest;
    }
};

/// Linear interpolation between two vertices has an error of at most an eighth of the curvature
/// times the square of their distance, which is at most the diagonal of a square of the mesh.
TEST_F(StageNumbers, AgreeTheBetterTheFinerTheMesh)
{
    constexpr double rounding = 1e-5;
    for (const StagedMaterial& staged : stagedMaterials) {
        for (const std::uint32_t squares : {1u, 4u, 16u, 64u}) {
            SCOPED_TRACE(Compose(staged.Name, " on ", squares, " squares"));
            const std::vector<Numbers> perVertex = Draw(staged, "Vertex", squares);
            const std::vector<Numbers> perFragment = Draw(staged, "Fragment", squares);
            const double distance = Compare(perVertex, perFragment);
            const double bound = staged.Curvature / 8.0 * 2.0 / (double(squares) * squares);
            EXPECT_LE(distance, bound + rounding);
            // On a coarse mesh the difference is visible, which shows that there really are two
            // stages.
            if (squares == 1) {
                EXPECT_GE(distance, bound / 4.0);
            }
            RecordProperty(Compose(staged.Name, " on ", squares, " squares"),
                           Compose(Show(distance), " of ", Show(bound)));
        }
    }
}

/// The fragment stage uses the exact position of each pixel.
TEST_F(StageNumbers, MeetTheReferencePerFragment)
{
    Comparison comparison("Cube per fragment", {64.0, "places of pixels are interpolated"});
    const std::vector<Numbers> image = Draw(stagedMaterials[3], "Fragment", 4);
    for (std::size_t i = 0; i < image.size(); ++i) {
        const double u = (static_cast<double>(i % pixels) + 0.5) / pixels;
        comparison.Check(image[i][0], Expected{u * u * u, 1.0},
                         [&] { return Compose("pixel ", i); });
    }
}

} // namespace
