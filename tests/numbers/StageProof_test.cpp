#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"
#include "tests/support/BuildTree.h"
#include "tests/support/MaterialText.h"
#include "tests/support/Random.h"
#include "tests/support/RandomMaterial.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

constexpr GridSize grid{2, 24};

/// If both stages need a value, the image must not depend on which of them computes it.
class StageProof : public NumbersTest
{
protected:
    static const Environment& SurfaceEnvironment()
    {
        static const Environment environment = ReadEnvironment(MOX_SURFACE_ENVIRONMENT);
        return environment;
    }

    /// Random vertex streams and textures for everything that a material reads.
    static RunInputs MakeInputs(const MaterialDocument& material, std::uint32_t seed)
    {
        RunInputs inputs;
        inputs.Scene = {
            {"time", {1.25f}}, {"frame", {3.0f}}, {"eyePosition", {0.5f, -0.25f, 3.0f}}};
        Random random(seed);
        const auto number = [&] { return static_cast<float>(random.Below(2001)) / 1000.0f - 1.0f; };
        for (const DocumentNode& node : material.Nodes) {
            const auto name =
                std::find_if(node.Properties.begin(), node.Properties.end(),
                             [](const auto& property) { return property.Name == "Name"; });
            if (name == node.Properties.end())
                continue;
            if (node.Type == "CoreTexture") {
                TextureImage image{4, 4, TexelFormat::Unorm8, std::vector<std::byte>(64)};
                for (std::byte& value : image.Bytes)
                    value = static_cast<std::byte>(random.Below(256));
                inputs.Textures[name->Value] = image;
            } else {
                std::vector<Numbers>& values = inputs.Streams[name->Value];
                for (std::size_t i = 0; i < GridPlaces(grid.Squares).size(); ++i)
                    values.push_back({number(), number(), number(), number()});
            }
        }
        return inputs;
    }

    /// The material without the edge that requires values in the vertex stage.
    static MaterialDocument WithoutOffset(MaterialDocument material)
    {
        for (auto edge = material.Edges.begin(); edge != material.Edges.end();)
            edge = edge->HeadPort == "in_offset" ? material.Edges.erase(edge) : std::next(edge);
        return material;
    }

    std::vector<Numbers> Draw(const MaterialDocument& material, StageCopies copies,
                              std::uint32_t seed) const
    {
        return Get().DrawMaterial(material, SurfaceEnvironment(), copies,
                                  MakeInputs(material, seed), grid);
    }

    /// The share of pixels that differ by more than rounding errors. A few may differ where
    /// rounding decides a comparison.
    static double Difference(const std::vector<Numbers>& one, const std::vector<Numbers>& other)
    {
        const auto isClose = [](float a, float b) {
            return a == b || (std::isnan(a) && std::isnan(b)) ||
                   std::abs(a - b) <= 1e-3f * std::max({1.0f, std::abs(a), std::abs(b)});
        };
        std::size_t count = 0;
        for (std::size_t i = 0; i < one.size(); ++i)
            count += std::equal(one[i].begin(), one[i].end(), other[i].begin(), isClose) ? 0 : 1;
        return static_cast<double>(count) / static_cast<double>(one.size());
    }
};

/// The offset does not contribute to the image, so the image must be the same without its edge. The
/// lines define the input of the emission and, through a copy, of the offset.
TEST_F(StageProof, AnOffsetChangesNoOtherValue)
{
    const char* const materials[] = {
        // a non-linear value computed from the stream
        R"(
        uv CoreUv; Name=uv0
        flipped CoreMaths; Function=Subtraction; Default Value 1=1
        bump CoreMaths; Function=Multiply
        split CoreSwizzle; Vector Type=Uv
        uv.read -> flipped.in_value2
        uv.read -> bump.in_value1
        flipped.out_value -> bump.in_value2
        bump.out_value -> split.in_vec
        split.out_x -> surface.in_emission
        split.out_x -> surface.in_offset
        )",
        // directions, which are normalised per pixel
        R"(
        normal SurfaceWorldNormal
        split CoreSwizzle; Vector Type=Vector; Component Count=3
        normal.read -> split.in_vec
        split.out_x -> surface.in_emission
        split.out_x -> surface.in_offset
        )",
        R"(
        eye SurfaceViewDirection
        split CoreSwizzle; Vector Type=Vector; Component Count=3
        eye.read -> split.in_vec
        split.out_z -> surface.in_emission
        split.out_z -> surface.in_offset
        )",
        // only some of the components are interpolated
        R"(
        uv CoreUv; Name=uv0
        square CoreMaths; Function=Multiply
        split CoreSwizzle; Vector Type=Uv
        parts CoreSwizzle; Vector Type=Uv
        merged CoreSwizzle; Vector Type=Colour; Reverse=true
        uv.read -> split.in_vec
        uv.read -> square.in_value1
        uv.read -> square.in_value2
        square.out_value -> parts.in_vec
        split.out_x -> merged.in_x
        parts.out_y -> merged.in_y
        split.out_y -> merged.in_z
        merged.out_vec -> surface.in_emission
        merged.out_vec -> surface.in_offset
        )",
    };
    for (const char* const text : materials) {
        SCOPED_TRACE(text);
        const MaterialDocument material = MaterialFromText(Compose("surface Surface\n", text));
        EXPECT_EQ(Difference(Draw(material, StageCopies::HandedOn, 1),
                             Draw(WithoutOffset(material), StageCopies::HandedOn, 1)),
                  0.0);
    }
}

/// Set the environment variable MOX_RANDOM_STAGES to test more materials.
TEST_F(StageProof, RandomMaterialsLookTheSameWithEverythingPerPixel)
{
    const char* wanted = std::getenv("MOX_RANDOM_STAGES");
    const std::uint32_t count = wanted ? std::stoul(wanted) : 40;
    const std::uint32_t first = DrawSeed();
    std::uint32_t drawn = 0;
    for (std::uint32_t seed = first; seed - first < count && !HasFailure(); ++seed) {
        SCOPED_TRACE(Compose("seed ", seed));
        // Steep functions amplify rounding errors into visible differences.
        const MaterialDocument material = MakeRandomMaterial(seed, 4 + static_cast<int>(seed % 16),
                                                             RandomTypes::DefinedEverywhere);
        constexpr double mostPixels = 0.02;
        try {
            const std::vector<Numbers> image = Draw(material, StageCopies::HandedOn, seed);
            EXPECT_LE(Difference(image, Draw(material, StageCopies::MadeTwice, seed)), mostPixels);
            EXPECT_LE(Difference(image, Draw(WithoutOffset(material), StageCopies::HandedOn, seed)),
                      mostPixels);
            ++drawn;
        } catch (const HostError& error) {
            // The number of interpolated values is limited; everything else must work.
            EXPECT_NE(std::string(error.what()).find("do not fit into"), std::string::npos)
                << error.what();
        }
    }
    EXPECT_GT(drawn, count * 8 / 10);
}

} // namespace
