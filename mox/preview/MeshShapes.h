#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/decode/FileDecoder.h"

#include <optional>
#include <string>

namespace Mox::Host {

/// Built-in meshes. Their only vertex colour set contains (u, v, 0, 1), so that masks and weights
/// that artists would paint show a gradient.

/// A sphere of radius 1. The texture wraps around it once; its middle column faces the camera.
Mesh MakeSphere();

/// A square from -1 to 1 that faces the camera and shows the whole texture upright. Its
/// tessellation is fine enough for materials that displace vertices.
Mesh MakePlane();

/// A cube from -1 to 1 with the whole texture on each side.
Mesh MakeCube();

/// View direction for meshes from files.
constexpr glm::vec3 meshFileView{0.5f, 0.4f, 1.0f};

/// Returns a built-in mesh by name, "sphere", "plane" or "cube"; nothing for any other name.
std::optional<Mesh> FindShape(const std::string& name);

/// Returns a built-in mesh by name, "sphere", "plane" or "cube", or else reads a mesh file.
/// @throws HostError if it is neither a built-in mesh nor a mesh file, or as FileDecoder::ReadMesh
///        does
Mesh FindMesh(const std::string& nameOrFile, const FileDecoder& files);

} // namespace Mox::Host
