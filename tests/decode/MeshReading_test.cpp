#include "mox/Text.h"
#include "mox/decode/FileDecoder.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

/// A binary glTF file of one triangle. It ends with the buffer of its positions.
const std::string triangleGlb = ReadFile(MOX_TEST_DATA "/decode/samples/triangle.glb");

/// This buffer as a data URI.
const std::string triangleUri = "data:application/octet-stream;base64,"
                                "AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA";

/// A glTF document with one node and one triangle.
/// @param accessor further members of the accessor for positions
std::string MakeGltf(const std::string& uri, const std::string& accessor = "",
                     const std::string& nodes = R"({"mesh":0})", int vertices = 3)
{
    return Compose(R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[)",
                   nodes, R"(],"meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],)",
                   R"("buffers":[{"byteLength":36,"uri":")", uri,
                   R"("}],"bufferViews":[{"buffer":0,"byteLength":36}],"accessors":[{)", accessor,
                   R"("bufferView":0,"componentType":5126,"type":"VEC3","count":)", vertices,
                   "}]}");
}

/// A chain of nodes. If each refers to the next one twice, the number of instances doubles with
/// every node.
std::string MakeChain(int count, bool isDoubling = false)
{
    std::string nodes;
    for (int i = 1; i < count; ++i)
        nodes += Compose(R"({"children":[)", i, isDoubling ? Compose(",", i) : "", "]},");
    return nodes + R"({"mesh":0})";
}

class MeshReading : public testing::Test
{
protected:
    Mesh Read(const std::string& name, std::string_view bytes)
    {
        return FileDecoder(_settings).ReadMesh(_folder.Write(name, bytes));
    }

    /// The error for a file, without its name and without "cannot be read".
    std::string FailureOfFile(const std::string& name, std::string_view bytes)
    {
        const std::string failure = HostFailureOf([&] { Read(name, bytes); });
        const std::string start = (_folder.Path() / name).string() + ": cannot be read: ";
        EXPECT_TRUE(failure.starts_with(start)) << failure;
        return failure.substr(std::min(start.size(), failure.size()));
    }

    TemporaryFolder _folder;
    DecodeSettings _settings;
};

TEST_F(MeshReading, KeepsVertexColours)
{
    const Mesh mesh = Read("a.obj", "v 0 0 0 1 0 0.5\nv 1 0 0 1 0 0.5\nv 0 1 0 1 0 0.5\nf 1 2 3\n");
    EXPECT_EQ(mesh.Name, "a.obj");
    ASSERT_EQ(mesh.ColourSets.size(), 1u);
    EXPECT_EQ(mesh.ColourSets[0][2], glm::vec4(1.0f, 0.0f, 0.5f, 1.0f));
    EXPECT_TRUE(mesh.UvSets.empty());
    EXPECT_TRUE(mesh.Tangents.empty());
    EXPECT_EQ(mesh.Normals[0], glm::vec3(0.0f, 0.0f, 1.0f));
}

TEST_F(MeshReading, JoinsPartsWithDifferentStreams)
{
    const Mesh mesh = Read("a.obj", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                    "vt 0 0\nvt 1 0\nvt 0 1\n"
                                    "o a\nusemtl x\nf 1/1 2/2 3/3\n"
                                    "o b\nf 3 2 1\n");
    EXPECT_EQ(mesh.Indices.size(), 6u);
    ASSERT_EQ(mesh.UvSets.size(), 1u);
    EXPECT_EQ(mesh.UvSets[0].size(), mesh.Positions.size());
    EXPECT_EQ(mesh.Tangents.size(), mesh.Positions.size());
}

TEST_F(MeshReading, FindsTheBuffersOfGltf)
{
    _folder.Write("data/a b.bin", triangleGlb.substr(triangleGlb.size() - 36));
    const std::string text = MakeGltf("data/a b.bin");
    EXPECT_EQ(Read("a.gltf", text).Positions.size(), 3u);
    EXPECT_EQ(Read("a.GLTF", "\n  " + text).Positions.size(), 3u);
    EXPECT_EQ(Read("b.gltf", MakeGltf(triangleUri)).Positions[1], glm::vec3(1.0f, 0.0f, 0.0f));
    EXPECT_EQ(Read("c.glb", triangleGlb).Positions[2], glm::vec3(0.0f, 1.0f, 0.0f));
    EXPECT_EQ(Read("c.gltf", triangleGlb).Indices.size(), 3u);
}

TEST_F(MeshReading, ReadsBytesThatNameNoOtherFile)
{
    const FileDecoder files(_settings);
    EXPECT_EQ(files.ReadMesh("c.glb", triangleGlb).Positions.size(), 3u);
    EXPECT_EQ(files.ReadMesh("b.gltf", MakeGltf(triangleUri)).Name, "b.gltf");
    const auto failure = [&](const std::string& name, const std::string& bytes) -> std::string {
        try {
            files.ReadMesh(name, bytes);
            return {};
        } catch (const HostError& error) {
            return error.Message;
        }
    };
    EXPECT_EQ(
        failure("a.gltf", MakeGltf("a.bin")),
        "cannot be read: the buffer \"a.bin\" is in a separate file, which cannot be read here; "
        "use a .glb file, which contains all buffers");
    EXPECT_NE(failure("a.obj", "nothing"), "");
    EXPECT_EQ(failure("/etc/passwd", "v"), "\"/etc/passwd\" is not the name of a mesh; expected a "
                                           "file with the extension .obj, .gltf or .glb");
}

TEST_F(MeshReading, SaysWhyItIsNone)
{
    _folder.Write("short.bin", "1234");
    ASSERT_EQ(mkfifo((_folder.Path() / "pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", _folder.Path() / "zero");
    const std::string ply = "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n"
                            "property float y\nproperty float z\nelement face 1\n"
                            "property list uchar int vertex_index\nend_header\n"
                            "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n";
    const std::string stl = "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                            "vertex 0 1 0\nendloop\nendfacet\nendsolid a\n";
    const std::string sparse =
        R"("sparse":{"count":3,"indices":{"bufferView":0,"componentType":5125,)"
        R"("byteOffset":2000000000},"values":{"bufferView":0,)"
        R"("byteOffset":2000000000}},)";
    // Where no message is given, any failure is accepted, since the message depends on the decoder.
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"a.gltf", "{", ""},
        {"a.glb", "glTF", ""},
        {"a.glb", triangleGlb.substr(0, triangleGlb.size() - 20), ""},
        {"a.obj", "no mesh", ""},
        {"a.obj", "", ""},
        {"a.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n", ""},
        {"a.obj", "v 0 0 0\nv 1 0 0\nv 1e39 1 0\nf 1 2 3\n", "a vertex position is not finite"},
        {"a.obj", ply, ""},
        {"a.obj", stl, ""},
        {"a.gltf", ply, "it is not a glTF file"},
        {"a.glb", stl, "it is not a glTF file"},
        {"a.gltf", "", "it is not a glTF file"},
        {"empty.gltf", MakeGltf(triangleUri, "", "{}"), "the mesh has no triangles"},
        {"a.gltf", MakeGltf("gone.bin"), "the buffer \"gone.bin\" cannot be read: No such file"},
        {"a.gltf", MakeGltf("short.bin"), ""},
        {"a.gltf", MakeGltf("pipe"),
         "the buffer \"pipe\" cannot be read: it is not a regular file"},
        {"a.gltf", MakeGltf("zero"), "it is not a regular file"},
        {"a.gltf", MakeGltf("../a.gltf"), "\"../a.gltf\" lies outside the folder of the file"},
        {"a.gltf", MakeGltf("/etc/passwd"), "\"/etc/passwd\" lies outside the folder of the file"},
        {"a.gltf", MakeGltf(triangleUri, sparse), ""},
        {"a.gltf", MakeGltf(triangleUri, "", R"({"mesh":0})", 1000000000), ""},
        {"a.gltf", R"({"a":)" + std::string(200000, '['), ""},
        {"a.gltf", MakeGltf(triangleUri, "", MakeChain(200000)), ""},
    };
    for (const auto& [name, bytes, message] : cases) {
        SCOPED_TRACE(std::string_view(bytes).substr(0, 400));
        const std::string failure = FailureOfFile(name, bytes);
        EXPECT_NE(failure.find(message), failure.npos) << failure;
        EXPECT_LT(failure.size(), 1100u);
    }
}

TEST_F(MeshReading, BoundsWhatItTakes)
{
    _settings.Limits.Bytes = 1 << 20;
    std::string vertices;
    for (int i = 0; i < 30000; ++i)
        vertices += "v 0 0 0\nv 1 0 0\nv 0 1 0\nf -1 -2 -3\n";
    EXPECT_NE(FailureOfFile("a.obj", vertices).find("larger than the limit of 1 MB"),
              std::string::npos);
    _settings.Limits.Bytes = std::uint64_t(64) << 20;
    _settings.Limits.Seconds = 5;
    FailureOfFile("a.gltf", MakeGltf(triangleUri, "", MakeChain(60, true)));
}

} // namespace
