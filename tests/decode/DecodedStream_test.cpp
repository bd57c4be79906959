#include "mox/decode/DecodedFile.h"
#include "mox/decode/DecodedStream.h"
#include "tests/support/Failure.h"
#include "tests/support/Tape.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

using namespace Mox::Host;

namespace {

Mesh MakeTriangle()
{
    Mesh mesh;
    mesh.Positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    mesh.Normals = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}};
    mesh.Indices = {0, 1, 2};
    return mesh;
}

Mesh Transmit(const Mesh& mesh, const DecodeLimits& limits = {})
{
    Tape tape;
    WriteMesh(mesh, tape.Writer());
    return ReadMesh(tape.Reader(), limits);
}

TEST(DecodedStream, KeepsEveryStreamOfAMesh)
{
    Mesh mesh = MakeTriangle();
    mesh.Tangents = {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    mesh.Binormals = {{0, 4, 0}, {0, 5, 0}, {0, 6, 0}};
    mesh.UvSets = {{{0, 0}, {1, 0}, {0, 1}}, {{7, 8}, {9, 10}, {11, 12}}};
    mesh.ColourSets = {{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}}};
    const Mesh read = Transmit(mesh);
    EXPECT_EQ(read.Positions, mesh.Positions);
    EXPECT_EQ(read.Normals, mesh.Normals);
    EXPECT_EQ(read.Tangents, mesh.Tangents);
    EXPECT_EQ(read.Binormals, mesh.Binormals);
    EXPECT_EQ(read.UvSets, mesh.UvSets);
    EXPECT_EQ(read.ColourSets, mesh.ColourSets);
    EXPECT_EQ(read.Indices, mesh.Indices);
}

TEST(DecodedStream, RefusesWhatIsNotAMesh)
{
    const std::pair<const char*, std::function<void(Mesh&)>> cases[] = {
        {"invalid", [](Mesh& mesh) { mesh.Indices[1] = 3; }},
        {"invalid", [](Mesh& mesh) { mesh.Indices.pop_back(); }},
        {"invalid", [](Mesh& mesh) { mesh.Indices.clear(); }},
        {"invalid", [](Mesh& mesh) { mesh.UvSets.resize(9, mesh.UvSets.front()); }},
        {"invalid", [](Mesh& mesh) { mesh.ColourSets.resize(9, std::vector<glm::vec4>(3)); }},
        {"not finite",
         [](Mesh& mesh) { mesh.Positions[2].y = std::numeric_limits<float>::infinity(); }},
        {"end", [](Mesh& mesh) { mesh.Normals.clear(); }},
    };
    for (const auto& [message, change] : cases) {
        Mesh mesh = MakeTriangle();
        mesh.UvSets = {std::vector<glm::vec2>(3)};
        change(mesh);
        const std::string failure = FailureOf<DecodeError>([&] { Transmit(mesh); });
        EXPECT_NE(failure.find(message), failure.npos) << failure << "\nand not: " << message;
    }
    const DecodeLimits limits = {.Bytes = 6 * sizeof(glm::vec3) + 3 * sizeof(std::uint32_t)};
    EXPECT_NO_THROW(Transmit(MakeTriangle(), limits));
    EXPECT_THROW(Transmit(MakeTriangle(), {.Bytes = limits.Bytes - 1}), DecodeError);
}

TEST(DecodedStream, AnImageKeepsToItsLimits)
{
    const TextureImage image{4, 2, TexelFormat::Float, std::vector<std::byte>(128, std::byte(7))};
    const auto transmit = [](const TextureImage& sent, const DecodeLimits& limits) {
        Tape tape;
        WriteImage(sent, tape.Writer());
        return ReadImage(tape.Reader(), limits);
    };
    EXPECT_EQ(transmit(image, {.Side = 4, .Bytes = 128}).Bytes, image.Bytes);
    EXPECT_THROW(transmit(image, {.Side = 3}), DecodeError);
    EXPECT_THROW(transmit(image, {.Bytes = 127}), DecodeError);
    EXPECT_THROW(transmit({0, 2, TexelFormat::Float, {}}, {}), DecodeError);
    EXPECT_THROW(transmit({1, 1, static_cast<TexelFormat>(9), {}}, {}), DecodeError);
}

TEST(DecodedStream, MessagesAreBoundedAndPlain)
{
    Tape tape;
    WriteFailure("a\nb\x1b[2J\xff" + std::string(5000, 'x'), tape.Writer());
    const std::string failure =
        FailureOf<DecodeError>([&] { ReadImage(tape.Reader(), DecodeLimits()); });
    EXPECT_EQ(failure.substr(0, 10), "a?b?[2J?xx");
    EXPECT_EQ(failure.size(), 1000u);
}

} // namespace
