#pragma once

#include <cstdint>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <string>
#include <vector>

namespace Mox::Host {

/// Triangles with all that a vertex may carry. Every stream has one entry for each vertex, or is
/// empty if the mesh lacks it. y points up, and outlines run anticlockwise seen from outside.
struct Mesh
{
    std::string Name; ///< for messages
    std::vector<glm::vec3> Positions;
    std::vector<glm::vec3> Normals;
    std::vector<glm::vec3> Tangents;            ///< where u grows
    std::vector<glm::vec3> Binormals;           ///< where v grows
    std::vector<std::vector<glm::vec2>> UvSets; ///< u to the right, v up in the image
    std::vector<std::vector<glm::vec4>> ColourSets;
    std::vector<std::uint32_t> Indices;   ///< three for each triangle
    glm::vec3 ViewFrom{0.0f, 0.0f, 1.0f}; ///< the side from which the mesh is looked at
};

} // namespace Mox::Host
