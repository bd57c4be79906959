#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/document/DocumentTextures.h"

#include <map>
#include <string>
#include <vector>

namespace Mox::Host {

/// Values of uniforms by name; matrices in column order.
using UniformValues = std::map<std::string, std::vector<float>>;

/// Constants for vertex streams that the environment reads, by name.
using StreamConstants = std::map<std::string, std::vector<float>>;

/// A texture that the environment reads.
struct SceneTexture
{
    std::vector<TextureImage> Levels;
    SamplerState Sampler = {};
};

using SceneTextures = std::map<std::string, SceneTexture>;

/// Returns the values that the preview's environment supplies: a camera that fits the mesh into the
/// image, a light from the upper left and a sky. All colours are linear.
/// @param aspect width of the image divided by its height
UniformValues MakeSceneValues(const Mesh& mesh, float aspect);

} // namespace Mox::Host
