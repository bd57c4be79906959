#pragma once

#include "Library.h"
#include "Material.h"
#include "mox/host/Picture.h"
#include "mox/host/Problem.h"
#include "mox/preview/MaterialPreview.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Mox::Python {

/// An immutable rendered image, with the problems of the material.
struct Image
{
    Host::Picture Content;
    std::vector<Host::Problem> Problems = {};
};

/// Renders materials. Any thread may use it; one image is rendered at a time.
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

/// How to draw the graph of a material; corresponds to the options of mox graph.
struct GraphSettings
{
    std::string Format = "svg"; ///< "svg", "png" or "dot"
    bool IsShader = false;      ///< draw the finished shader graph with its stages
    bool HasThumbnails = false; ///< show what nodes output instead of their icons
};

/// @returns the content of the file
/// @throws HostError if the format is unknown, or if Graphviz or the device for thumbnails is
///         missing
std::string DrawGraph(const Material& material, const GraphSettings& settings);

} // namespace Mox::Python
