#pragma once

#include "mox/decode/FileDecoder.h"
#include "mox/decode/Mesh.h"

#include <optional>
#include <string>

namespace Mox::Host {

/// The built-in meshes. Their one vertex colour set holds (u, v, 0, 1), so that masks and weights
/// that artists would paint have a gradient to show.

/// A globe of radius 1. The image goes round it once; its middle column faces the eye.
Mesh MakeSphere();

/// A square from -1 to 1 that faces the eye and shows the whole image upright. Fine enough for
/// materials that move vertices.
Mesh MakePlane();

/// A cube from -1 to 1 with the whole image on each side.
Mesh MakeCube();

/// From where a mesh that comes from a file is looked at.
constexpr glm::vec3 meshFileView{0.5f, 0.4f, 1.0f};

/// A built-in mesh by its name, "sphere", "plane" or "cube"; nothing if it is none of these.
std::optional<Mesh> FindShape(const std::string& name);

/// A built-in mesh by its name, "sphere", "plane" or "cube", or else that of a mesh file.
/// @throws HostError if it is none of these, or as FileDecoder::ReadMesh does
Mesh FindMesh(const std::string& nameOrFile, const FileDecoder& files);

} // namespace Mox::Host
