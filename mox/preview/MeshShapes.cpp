#include "mox/preview/MeshShapes.h"

#include "mox/host/HostError.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <numbers>

namespace Mox::Host {

namespace {

struct Vertex
{
    glm::vec3 Position;
    glm::vec3 Normal;
    glm::vec3 Tangent;
    glm::vec3 Binormal;
};

/// Adds a grid of columns times rows quads, with u and v from 0 to 1.
/// @param at returns the vertex at u and v
template <class At>
void AddSheet(Mesh& mesh, std::uint32_t columns, std::uint32_t rows, At at)
{
    const auto first = static_cast<std::uint32_t>(mesh.Positions.size());
    mesh.UvSets.resize(1);
    mesh.ColourSets.resize(1);
    for (std::uint32_t row = 0; row <= rows; ++row) {
        for (std::uint32_t column = 0; column <= columns; ++column) {
            const float u = static_cast<float>(column) / static_cast<float>(columns);
            const float v = static_cast<float>(row) / static_cast<float>(rows);
            const Vertex vertex = at(u, v);
            mesh.Positions.push_back(vertex.Position);
            mesh.Normals.push_back(vertex.Normal);
            mesh.Tangents.push_back(vertex.Tangent);
            mesh.Binormals.push_back(vertex.Binormal);
            mesh.UvSets[0].emplace_back(u, v);
            mesh.ColourSets[0].emplace_back(u, v, 0.0f, 1.0f);
        }
    }
    for (std::uint32_t row = 0; row < rows; ++row) {
        for (std::uint32_t column = 0; column < columns; ++column) {
            const std::uint32_t low = first + row * (columns + 1) + column;
            const std::uint32_t high = low + columns + 1;
            for (const std::uint32_t index : {low, low + 1, high + 1, low, high + 1, high})
                mesh.Indices.push_back(index);
        }
    }
}

/// Adds a square of half-width 1 whose centre is at the given distance along its normal.
void AddSquare(Mesh& mesh, std::uint32_t quads, const glm::vec3& right, const glm::vec3& up,
               float distance)
{
    const glm::vec3 normal = glm::cross(right, up);
    AddSheet(mesh, quads, quads, [&](float u, float v) {
        return Vertex{distance * normal + (2.0f * u - 1.0f) * right + (2.0f * v - 1.0f) * up,
                      normal, right, up};
    });
}

} // namespace

Mesh MakeSphere()
{
    constexpr std::uint32_t columns = 128;
    constexpr std::uint32_t rows = 64;
    constexpr float pi = std::numbers::pi_v<float>;
    Mesh mesh;
    mesh.Name = "sphere";
    AddSheet(mesh, columns, rows, [](float u, float v) {
        const float longitude = (2.0f * u - 1.0f) * pi;
        const float latitude = (v - 0.5f) * pi;
        const glm::vec3 outward(std::sin(longitude), 0.0f, std::cos(longitude));
        const glm::vec3 tangent(std::cos(longitude), 0.0f, -std::sin(longitude));
        const glm::vec3 up(0.0f, 1.0f, 0.0f);
        const glm::vec3 normal = std::cos(latitude) * outward + std::sin(latitude) * up;
        return Vertex{normal, normal, tangent, glm::cross(normal, tangent)};
    });
    return mesh;
}

Mesh MakePlane()
{
    constexpr std::uint32_t quads = 64;
    Mesh mesh;
    mesh.Name = "plane";
    AddSquare(mesh, quads, {1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, 0.0f);
    return mesh;
}

Mesh MakeCube()
{
    constexpr std::uint32_t quads = 16;
    const glm::vec3 x(1.0f, 0.0f, 0.0f);
    const glm::vec3 y(0.0f, 1.0f, 0.0f);
    const glm::vec3 z(0.0f, 0.0f, 1.0f);
    Mesh mesh;
    mesh.Name = "cube";
    mesh.ViewFrom = {0.7f, 0.6f, 1.0f};
    AddSquare(mesh, quads, x, y, 1.0f);
    AddSquare(mesh, quads, -x, y, 1.0f);
    AddSquare(mesh, quads, -z, y, 1.0f);
    AddSquare(mesh, quads, z, y, 1.0f);
    AddSquare(mesh, quads, x, -z, 1.0f);
    AddSquare(mesh, quads, x, z, 1.0f);
    return mesh;
}

std::optional<Mesh> FindShape(const std::string& name)
{
    if (name == "sphere")
        return MakeSphere();
    if (name == "plane")
        return MakePlane();
    if (name == "cube")
        return MakeCube();
    return std::nullopt;
}

Mesh FindMesh(const std::string& nameOrFile, const FileDecoder& files)
{
    if (auto shape = FindShape(nameOrFile))
        return *std::move(shape);
    if (!IsMeshFile(nameOrFile)) {
        throw HostError(nameOrFile, "is not a mesh; expected \"sphere\", \"plane\", \"cube\", or "
                                    "an .obj, .gltf or .glb file");
    }
    Mesh mesh = files.ReadMesh(nameOrFile);
    mesh.ViewFrom = meshFileView;
    return mesh;
}

} // namespace Mox::Host
