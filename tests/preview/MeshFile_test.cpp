#include "mox/host/HostError.h"
#include "mox/preview/MeshFile.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <glm/geometric.hpp>

using namespace Mox::Host;

namespace {

TEST(MeshFile, KeepsVertexColours)
{
    const TemporaryFolder folder;
    const Mesh mesh = ReadMesh(folder.Write("a.obj", "v 0 0 0 1 0 0.5\n"
                                                     "v 1 0 0 1 0 0.5\n"
                                                     "v 0 1 0 1 0 0.5\n"
                                                     "f 1 2 3\n"));
    ASSERT_EQ(mesh.ColourSets.size(), 1u);
    EXPECT_EQ(mesh.ColourSets[0][2], glm::vec4(1.0f, 0.0f, 0.5f, 1.0f));
    EXPECT_TRUE(mesh.UvSets.empty());
    EXPECT_TRUE(mesh.Tangents.empty());
}

TEST(MeshFile, JoinsPartsWithDifferentStreams)
{
    const TemporaryFolder folder;
    const Mesh mesh = ReadMesh(folder.Write("a.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                                     "vt 0 0\nvt 1 0\nvt 0 1\n"
                                                     "o a\nf 1/1 2/2 3/3\n"
                                                     "o b\nf 3 2 1\n"));
    EXPECT_EQ(mesh.Indices.size(), 6u);
    ASSERT_EQ(mesh.UvSets.size(), 1u);
    EXPECT_EQ(mesh.UvSets[0].size(), mesh.Positions.size());
    EXPECT_EQ(mesh.Tangents.size(), mesh.Positions.size());
}

TEST(MeshFile, SaysWhyItIsNone)
{
    const TemporaryFolder folder;
    const auto failureOf = [](const std::filesystem::path& file) {
        const std::string failure = HostFailureOf([&] { ReadMesh(file); });
        EXPECT_EQ(failure.find(file.string() + ": "), 0u) << failure;
        return failure.substr(std::min(failure.size(), file.string().size() + 2));
    };
    EXPECT_EQ(failureOf(folder.Path() / "gone.obj"), "cannot be read: there is no such file");
    EXPECT_EQ(failureOf(folder.Write("a.fbx")),
              "is neither sphere, plane nor cube, nor an .obj, .gltf or .glb file");
    for (const auto& [name, text] :
         {std::pair("a.gltf", "{"), std::pair("b.glb", "glTF"), std::pair("c.obj", "no mesh"),
          std::pair("d.obj", ""), std::pair("e.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n")}) {
        const std::string failure = failureOf(folder.Write(name, text));
        EXPECT_EQ(failure.find("cannot be read: "), 0u) << name << ": " << failure;
        EXPECT_EQ(failure.find('\n'), failure.npos);
    }
    EXPECT_EQ(
        failureOf(folder.Write(
            "empty.gltf",
            R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{}]})")),
        "the mesh has no triangles");
}

} // namespace
