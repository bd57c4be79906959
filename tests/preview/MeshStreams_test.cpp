#include "mox/bindings/Binding.h"
#include "mox/host/HostError.h"
#include "mox/preview/MeshShapes.h"
#include "mox/preview/MeshStreams.h"
#include "tests/support/Failure.h"

#include <gtest/gtest.h>

using namespace Mox;
using namespace Mox::Host;
using Materials::CreateBinding;
using Materials::StreamType;

namespace {

const ShaderType uvType(ComponentType::Float, 2, 1, 1);
const ShaderType colourType(ComponentType::Half, 4, 1, 1);

TEST(MeshStreams, ModifiersChangeTheComponentsThatTheyName)
{
    const std::pair<const char*, std::vector<float>> cases[] = {
        {"", {0.25f, 0.75f}},           {"oneminus|v", {0.25f, 0.25f}},
        {"oneminus|u", {0.75f, 0.75f}}, {"negate", {-0.25f, -0.75f}},
        {"negate|y", {0.25f, -0.75f}},  {"negate|v oneminus|v", {0.25f, 1.75f}}};
    for (const auto& [modifiers, values] : cases) {
        MeshStream stream{2, {0.25f, 0.75f}};
        ApplyModifiers(modifiers, stream);
        EXPECT_EQ(stream.Values, values) << modifiers;
    }
    MeshStream stream{2, {0.25f, 0.75f}};
    EXPECT_THROW(ApplyModifiers("halve", stream), HostError);
    EXPECT_THROW(ApplyModifiers("negate|z", stream), HostError);
    EXPECT_THROW(ApplyModifiers("negate|q", stream), HostError);
}

std::vector<float> ReadUv(const Mesh& mesh, const std::string& tag, const std::string& value)
{
    const auto binding = CreateBinding(StreamType::Uv, tag, 1);
    binding->SetDefaultText(value);
    return ReadBoundStream(mesh, PluginBinding(binding), uvType).Values;
}

TEST(MeshStreams, SetsGoByTheNumberInTheBinding)
{
    Mesh mesh;
    mesh.Positions = {{}};
    mesh.UvSets = {{{0.0f, 1.0f}}, {{1.0f, 1.0f}}};
    const auto setOf = [&](const std::string& tag, const std::string& value) {
        return ReadUv(mesh, tag, value).front();
    };
    EXPECT_EQ(setOf("base", ""), 0.0f);
    EXPECT_EQ(setOf("uv1", ""), 1.0f);
    EXPECT_EQ(setOf("uv1", "TEXCOORD_0"), 0.0f);
    EXPECT_EQ(setOf("base", "1"), 1.0f);
    EXPECT_EQ(setOf("uv7", ""), 0.0f) << "the mesh has no eighth set";
}

TEST(MeshStreams, ValuesReplaceWhatTheMeshLacks)
{
    Mesh mesh;
    mesh.Positions = {{}, {}};
    EXPECT_EQ(ReadUv(mesh, "base", "0.25, 0.5"), (std::vector<float>{0.25f, 0.5f, 0.25f, 0.5f}));
    for (const char* value : {"", "1", "1,2,3", "TEXCOORD_0"})
        EXPECT_THROW(ReadUv(mesh, "base", value), HostError) << value;
}

TEST(MeshStreams, SayWhatTheMeshLacks)
{
    Mesh mesh;
    mesh.Name = "bare.obj";
    mesh.Positions = {{}};
    EXPECT_EQ(HostFailureOf([&] {
                  ReadBoundStream(mesh, PluginBinding(CreateBinding(StreamType::Colour, "mask", 1)),
                                  colourType);
              }),
              "the mesh \"bare.obj\" has no vertex colours, which the material reads as \"mask\"; "
              "set a constant of type half4 with --set mask=NUMBERS");
    EXPECT_EQ(HostFailureOf([&] { ReadNamedStream(mesh, "tangent", colourType); }),
              "the mesh \"bare.obj\" has no tangents (computed from texture coordinates); "
              "set a constant of type half4 with --set tangent=NUMBERS");
    EXPECT_EQ(HostFailureOf([&] { ReadNamedStream(mesh, "windWeight", uvType); }),
              "the mesh \"bare.obj\" has no stream \"windWeight\"; set a constant of type float2 "
              "with --set windWeight=NUMBERS");
}

} // namespace
