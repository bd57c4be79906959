#pragma once

#include "Library.h"
#include "Material.h"
#include "mox/host/Picture.h"
#include "mox/host/Problem.h"
#include "mox/preview/MaterialPreview.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Mox::Python {

/// A drawn image that never changes, with what was wrong with the material.
struct Image
{
    Host::Picture Content;
    std::vector<Host::Problem> Problems = {};
};

/// Draws materials. Any thread may use it; one picture is drawn at a time.
class Preview
{
public:
    /// @throws HostError if there is no Vulkan device
    Preview(std::shared_ptr<const Library> library, const Host::DecodeLimits& limits);

    /// @param mesh "sphere", "plane", "cube" or a mesh file
    /// @throws HostError if a value, the mesh or the size cannot be used
    Image Render(const Material& material, const std::string& mesh,
                 const Host::PreviewOptions& options) const;

    /// @param nodes each "id" or "id.port"
    std::vector<Image> RenderNodes(const Material& material, const std::string& mesh,
                                   const Host::PreviewOptions& options,
                                   const std::vector<std::string>& nodes) const;

    std::string DeviceName() const { return _preview.DeviceName(); }

private:
    std::shared_ptr<const Library> _library;
    mutable std::mutex _mutex;
    mutable Host::FileDecoder _files;
    Host::MaterialPreview _preview;
};

/// Draws the graph of a material, as mox graph does.
struct GraphSettings
{
    std::string Format = "svg"; ///< "svg", "png" or "dot"
    bool IsShader = false;      ///< the finished shader graph with its stages
    bool HasThumbnails = false; ///< what nodes put out instead of their icons
};

/// @returns the bytes of the file
/// @throws HostError if the format is unknown, or if Graphviz or the device for thumbnails is
/// missing
std::string DrawGraph(const Material& material, const GraphSettings& settings);

} // namespace Mox::Python
