#pragma once

#include "mox/decode/Mesh.h"
#include "mox/decode/TextureImage.h"
#include "mox/document/SamplerState.h"

#include <map>
#include <string>
#include <vector>

namespace Mox::Host {

/// Values of uniforms by their names; matrices column by column.
using UniformValues = std::map<std::string, std::vector<float>>;

/// A texture that the environment reads.
struct SceneTexture
{
    std::vector<TextureImage> Levels;
    SamplerState Sampler = {};
};

using SceneTextures = std::map<std::string, SceneTexture>;

/// What the environment of a preview supplies: the camera so that the mesh fills the picture, a
/// light from the upper left and a sky. All colours are linear light.
/// @param aspect width of the picture over its height
UniformValues MakeSceneValues(const Mesh& mesh, float aspect);

} // namespace Mox::Host
