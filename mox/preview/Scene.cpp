#define GLM_FORCE_DEPTH_ZERO_TO_ONE

#include "mox/preview/Scene.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/mat4x4.hpp>

namespace Mox::Host {

namespace {

constexpr float halfViewAngle = 0.2617994f; ///< 15 degrees, vertical
constexpr float filledPart = 0.9f;          ///< share of the image that the mesh fills

const glm::vec3 keyLight(-0.5f, 0.6f, 0.65f);

struct Camera
{
    glm::vec3 Eye;
    glm::mat4 View;
    glm::mat4 Projection;
};

glm::vec3 FindMiddle(const Mesh& mesh)
{
    glm::vec3 low = mesh.Positions.front();
    glm::vec3 high = low;
    for (const glm::vec3& position : mesh.Positions) {
        low = glm::min(low, position);
        high = glm::max(high, position);
    }
    return 0.5f * (low + high);
}

Camera PlaceCamera(const Mesh& mesh, float aspect)
{
    const glm::vec3 middle = FindMiddle(mesh);
    const glm::vec3 back = glm::normalize(mesh.ViewFrom);
    const glm::vec3 right = glm::normalize(glm::cross(glm::vec3(0.0f, 1.0f, 0.0f), back));
    const glm::vec3 up = glm::cross(back, right);
    const float slope = std::tan(halfViewAngle);
    float distance = 0.0f;
    float radius = 0.0f;
    for (const glm::vec3& position : mesh.Positions) {
        const glm::vec3 offset = position - middle;
        const float across =
            std::max(std::abs(glm::dot(offset, right)) / aspect, std::abs(glm::dot(offset, up)));
        distance = std::max(distance, glm::dot(offset, back) + across / (slope * filledPart));
        radius = std::max(radius, glm::length(offset));
    }
    if (distance <= 0.0f)
        distance = 1.0f;
    const glm::vec3 eye = middle + distance * back;
    const float nearest = 0.05f * distance;
    const float farthest = distance + 4.0f * radius;
    return {eye, glm::lookAt(eye, middle, up),
            glm::perspective(2.0f * halfViewAngle, aspect, nearest, farthest)};
}

std::vector<float> ValuesOf(const glm::mat4& matrix)
{
    const float* values = glm::value_ptr(matrix);
    return {values, values + 16};
}

std::vector<float> ValuesOf(const glm::vec3& vector)
{
    return {vector.x, vector.y, vector.z};
}

/// Returns the directions to the lights of physical surfaces: one from the upper left, one from
/// behind, and two unused ones. A fourth component of 0 marks a directional light.
std::vector<float> ListLights()
{
    const glm::vec3 rimLight(0.8f, 0.5f, -0.7f);
    const glm::vec3 noLight(0.0f, 1.0f, 0.0f);
    std::vector<float> values;
    for (const glm::vec3& light : {keyLight, rimLight, noLight, noLight}) {
        const glm::vec3 direction = glm::normalize(light);
        values.insert(values.end(), {direction.x, direction.y, direction.z, 0.0f});
    }
    return values;
}

} // namespace

UniformValues MakeSceneValues(const Mesh& mesh, float aspect)
{
    const Camera camera = PlaceCamera(mesh, aspect);
    const glm::mat4 world(1.0f);
    return {
        {"world", ValuesOf(world)},
        {"worldInverseTranspose", ValuesOf(world)},
        {"worldViewProjection", ValuesOf(camera.Projection * camera.View * world)},
        {"worldToView", ValuesOf(camera.View)},
        {"eyePosition", ValuesOf(camera.Eye)},
        {"lightDirection", ValuesOf(glm::normalize(keyLight))},
        {"lightColour", {0.85f, 0.82f, 0.76f}},
        {"skyColour", {0.22f, 0.26f, 0.34f}},
        {"groundColour", {0.09f, 0.08f, 0.07f}},
        {"lightPlaces", ListLights()},
        {"lightColours",
         {0.85f, 0.82f, 0.76f, 0.5f, 0.55f, 0.65f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f}},
        {"toneMapping", {1.0f}},
    };
}

} // namespace Mox::Host
