#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/Picture.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramFormat.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Host {

/// A picture that an editor requests.
struct PictureRequest
{
    std::string Node;            ///< "id" or "id.port"; empty for the material
    std::string Mesh = "sphere"; ///< one of the shapes that the painter has
    std::uint32_t Width = 256;   ///< pixels
    std::uint32_t Height = 256;
    float Frame = 0;
    std::map<std::string, std::string> Values; ///< of bindings, or of what the environment supplies
};

/// A texture with its mip levels, in the form that graphics libraries accept.
struct LoadedTexture
{
    struct Level
    {
        std::uint32_t Width;
        std::uint32_t Height;
        std::uint32_t Layers; ///< faces of a cube map or slices of a volume
    };

    std::string Format; ///< "unorm8", four bytes for each texel, or "half", four 16-bit floats
    std::vector<Level> Levels;       ///< the largest first
    std::vector<std::uint8_t> Bytes; ///< of each level the layers, their rows from top to bottom
};

/// A mesh with its vertex streams, in the form that graphics libraries accept.
struct LoadedMesh
{
    struct Stream
    {
        std::string Name; ///< "position", "normal", "tangent", "binormal", "uv" or "colour"
        std::uint32_t Components;
    };

    std::string Name;
    std::size_t VertexCount = 0;
    std::size_t IndexCount = 0;
    std::vector<Stream>
        Streams; ///< sets of one name in their order; those that it lacks are missing
    float ViewFrom[3] = {0, 0, 1}; ///< the side from which it is looked at
    std::vector<std::uint8_t>
        Bytes; ///< the streams one after the other in 32-bit floats, then
               ///< the indices in 32 bits, all in the byte order of the machine
};

/// Draws materials. The host of an editor supplies it, so that the editor does not depend on a
/// device.
class Painter
{
public:
    virtual ~Painter() = default;

    /// May be called from any thread, but not from two at the same time.
    /// @param problems receives the problems of the material
    /// @throws HostError if the request is invalid or nothing can be drawn at all
    virtual Picture Draw(const MaterialDocument& document, const PictureRequest& request,
                         ProblemList& problems) = 0;

    /// The texture of a texture binding, or a stand-in if it cannot be read. Threads as for Draw.
    /// @param sampler type of the sampler that reads it, such as "samplerCUBE"
    /// @throws HostError if there is no such binding, or if the type is not that of a sampler
    virtual LoadedTexture Load(const MaterialDocument& document, const std::string& tag,
                               const std::string& sampler, ProblemList& problems) = 0;

    /// Reads a mesh from the bytes of a file, which may come from anybody. Threads as for Draw.
    /// @param name of the file
    /// @throws HostError if it is not a mesh
    virtual LoadedMesh ReadMesh(const std::string& name, std::string_view bytes) = 0;
};

/// What an editor needs from its host. All of it must outlive the sessions and their jobs.
struct EditorServices
{
    const PluginSet* Plugins = nullptr;
    const Host::Environment* Environment = nullptr;
    std::map<std::string, std::shared_ptr<const ProgramFormat>> Formats; ///< by target
    std::shared_ptr<const ProgramFormat> Proof; ///< shows whether programs compile; may be null
    std::shared_ptr<Painter> Pictures;          ///< null if nothing can be drawn
    std::shared_ptr<const LoadedMesh> Mesh;     ///< shown at first; null leaves that to pages
};

} // namespace Mox::Host
