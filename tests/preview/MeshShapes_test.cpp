#include "mox/preview/MeshShapes.h"

#include <gtest/gtest.h>

#include <glm/geometric.hpp>

using namespace Mox::Host;

namespace {

/// The directions in which the position changes with u and v on a triangle.
struct Slopes
{
    glm::vec3 AlongU;
    glm::vec3 AlongV;
};

Slopes SlopesOf(const Mesh& mesh, std::size_t triangle)
{
    const auto corner = [&](std::size_t i) { return mesh.Indices[triangle * 3 + i]; };
    const glm::vec3 p1 = mesh.Positions[corner(1)] - mesh.Positions[corner(0)];
    const glm::vec3 p2 = mesh.Positions[corner(2)] - mesh.Positions[corner(0)];
    const glm::vec2 t1 = mesh.UvSets[0][corner(1)] - mesh.UvSets[0][corner(0)];
    const glm::vec2 t2 = mesh.UvSets[0][corner(2)] - mesh.UvSets[0][corner(0)];
    const float area = t1.x * t2.y - t2.x * t1.y;
    return {(p1 * t2.y - p2 * t1.y) / area, (p2 * t1.x - p1 * t2.x) / area};
}

TEST(MeshShapes, FramesFollowTheSurfaceAndTheImage)
{
    for (const Mesh& mesh : {MakeSphere(), MakePlane(), MakeCube()}) {
        SCOPED_TRACE(mesh.Name);
        const std::size_t count = mesh.Positions.size();
        ASSERT_EQ(mesh.Normals.size(), count);
        ASSERT_EQ(mesh.Tangents.size(), count);
        ASSERT_EQ(mesh.Binormals.size(), count);
        ASSERT_EQ(mesh.UvSets[0].size(), count);
        ASSERT_EQ(mesh.ColourSets[0].size(), count);
        std::size_t checked = 0;
        for (std::size_t triangle = 0; triangle < mesh.Indices.size() / 3; ++triangle) {
            const std::uint32_t first = mesh.Indices[triangle * 3];
            const glm::vec3& p = mesh.Positions[first];
            const glm::vec3 face = glm::cross(mesh.Positions[mesh.Indices[triangle * 3 + 1]] - p,
                                              mesh.Positions[mesh.Indices[triangle * 3 + 2]] - p);
            if (glm::length(face) < 1e-5f)
                continue; // degenerate triangles at the poles
            ++checked;
            const glm::vec3& normal = mesh.Normals[first];
            ASSERT_NEAR(glm::length(normal), 1.0f, 1e-5f);
            ASSERT_GT(glm::dot(glm::normalize(face), normal), 0.99f) << triangle;
            const Slopes slopes = SlopesOf(mesh, triangle);
            ASSERT_GT(glm::dot(glm::normalize(slopes.AlongU), mesh.Tangents[first]), 0.98f)
                << triangle;
            ASSERT_GT(glm::dot(glm::normalize(slopes.AlongV), mesh.Binormals[first]), 0.98f)
                << triangle;
        }
        EXPECT_GT(checked, mesh.Indices.size() / 3 * 9 / 10);
    }
}

} // namespace
