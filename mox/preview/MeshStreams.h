#pragma once

#include "mox/decode/Mesh.h"
#include "mox/host/PluginBinding.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Host {

/// One vertex stream as numbers.
struct MeshStream
{
    std::uint32_t Components = 0;
    std::vector<float> Values; ///< vertex by vertex
};

/// What a mesh holds for a vertex input that a material binds. Of several uv or vertex colour sets
/// it is the one whose number stands at the end of the binding's value, or else of its name; the
/// first one if there is no such set. The binding's dataset modifiers are applied.
/// @throws HostError if the mesh has no such stream, or if a modifier is unknown
MeshStream ReadBoundStream(const Mesh& mesh, const PluginBinding& binding);

/// What a mesh holds for a vertex input of the environment, by its word: "position", "normal",
/// "uv", "tangent", "binormal" or "colour".
/// @throws HostError if the mesh has no such stream
MeshStream ReadNamedStream(const Mesh& mesh, const std::string& name);

/// Changes the values as a text such as "oneminus|v" says: "oneminus" or "negate", and after a bar
/// the letters of the components concerned, else all. Several stand with blanks between them.
/// @throws HostError if the text does not say so
void ApplyModifiers(const std::string& modifiers, MeshStream& stream);

} // namespace Mox::Host
