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
#include <vector>

namespace Mox::Host {

/// An image that an editor requests.
struct PictureRequest
{
    std::string Node;            ///< "id" or "id.port"; empty for the whole material
    std::string Mesh = "sphere"; ///< one of the painter's shapes
    std::uint32_t Width = 256;   ///< in pixels
    std::uint32_t Height = 256;
    float Frame = 0;
    std::map<std::string, std::string> Values; ///< overrides for bindings or for values that the
                                               ///< environment supplies
};

/// A texture with its mip levels, in a form that graphics APIs accept.
struct LoadedTexture
{
    struct Level
    {
        std::uint32_t Width;
        std::uint32_t Height;
        std::uint32_t Layers; ///< faces of a cube map or slices of a volume
    };

    std::string Format; ///< "unorm8" (four bytes per texel) or "half" (four 16-bit floats per
                        ///< texel)
    std::vector<Level> Levels;       ///< largest first
    std::vector<std::uint8_t> Bytes; ///< the levels one after another, layer by layer, rows from
                                     ///< top to bottom
};

/// A mesh with its vertex streams, in a form that graphics APIs accept.
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
        Streams; ///< sets of the same name in order; streams that the mesh lacks are omitted
    float ViewFrom[3] = {0, 0, 1};   ///< direction from which the mesh is viewed
    std::vector<std::uint8_t> Bytes; ///< the streams one after another as 32-bit floats, followed
                                     ///< by the 32-bit indices, all in the machine's byte order
};

/// Renders materials. The host of an editor supplies the implementation, so the editor does not
/// depend on a graphics device.
class Painter
{
public:
    virtual ~Painter() = default;

    /// May be called from any thread, but never concurrently.
    /// @param problems receives the problems of the material
    /// @throws HostError if the request is invalid or nothing can be drawn at all
    virtual Picture Draw(const MaterialDocument& document, const PictureRequest& request,
                         ProblemList& problems) = 0;

    /// Loads the texture of a texture binding, or a placeholder if it cannot be read. The threading
    /// rule of Draw applies.
    /// @param sampler type of the sampler that reads it, such as "samplerCUBE"
    /// @throws HostError if there is no such binding or no such type
    virtual LoadedTexture Load(const MaterialDocument& document, const std::string& tag,
                               const std::string& sampler, ProblemList& problems) = 0;

    /// Parses a mesh file from an untrusted source. The threading rule of Draw applies.
    /// @param name of the file
    /// @throws HostError if it is not a mesh
    virtual LoadedMesh ReadMesh(const std::string& name, std::string_view bytes) = 0;
};

/// What an editor requires from its host. All of it must outlive the sessions and their jobs.
struct EditorServices
{
    const PluginSet* Plugins = nullptr;
    const Host::Environment* Environment = nullptr;
    std::map<std::string, std::shared_ptr<const ProgramFormat>> Formats; ///< keyed by target
    std::shared_ptr<const ProgramFormat> Proof; ///< used to check that programs compile; may be
                                                ///< null
    std::shared_ptr<Painter> Pictures;          ///< null if drawing is not available
    std::shared_ptr<const LoadedMesh> Mesh;     ///< shown initially; if null, the pages choose
};

} // namespace Mox::Host
