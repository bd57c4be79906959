#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/host/PluginBinding.h"
#include "mox/shader/ShaderType.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Host {

/// The values of one vertex stream.
struct MeshStream
{
    std::uint32_t Components = 0;
    std::vector<float> Values; ///< vertex by vertex
};

/// Returns the stream of a mesh that a vertex binding refers to. If there are several uv or vertex
/// colour sets, the number at the end of the binding's value, or else of its name, selects one;
/// otherwise it is the first set. If the mesh has no such stream, the binding's value is used for
/// all vertices. The binding's dataset modifiers are applied.
/// @param type of the vertex input, a vector
/// @throws HostError if the mesh has no such stream and the value is not a number for each
///         component, or if a modifier is unknown
MeshStream ReadBoundStream(const Mesh& mesh, const PluginBinding& binding, const ShaderType& type);

/// Returns the stream of a mesh for a vertex input of the environment: "position", "normal", "uv",
/// "tangent", "binormal" or "colour".
/// @param type of the vertex input
/// @throws HostError if the mesh has no such stream
MeshStream ReadNamedStream(const Mesh& mesh, const std::string& name, const ShaderType& type);

/// Returns a stream with the same value for all vertices of a mesh.
/// @param value 1 to 4 components
MeshStream MakeConstantStream(const Mesh& mesh, const std::vector<float>& value);

/// Applies modifiers, separated by spaces, to the values. A modifier such as "oneminus|v" is
/// "oneminus" or "negate", optionally followed by a bar and the letters of the components to
/// change; without letters it changes all.
/// @throws HostError if a modifier is not valid
void ApplyModifiers(const std::string& modifiers, MeshStream& stream);

} // namespace Mox::Host
