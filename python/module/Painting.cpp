#include "Painting.h"

#include "Errors.h"
#include "Thumbnails.h"
#include "mox/Text.h"
#include "mox/check/MaterialCheck.h"
#include "mox/host/Excerpt.h"
#include "mox/host/NearestName.h"
#include "mox/pictures/Graphviz.h"
#include "mox/pictures/MaterialPicture.h"
#include "mox/pictures/ShaderPicture.h"
#include "mox/preview/MeshShapes.h"
#include "mox/program/MaterialProgram.h"

#include <cmath>
#include <map>

namespace Mox::Python {

namespace {

void RequireUsable(const Host::PreviewOptions& options)
{
    if (options.Width == 0 || options.Height == 0 || options.FrameCount == 0)
        throw Host::HostError({},
                              "the width, the height and the number of frames must be at least 1");
    if (!std::isfinite(options.FirstFrame) || (options.Time && !std::isfinite(*options.Time)))
        throw Host::HostError({}, "the frame and the time must be finite numbers");
}

} // namespace

Preview::Preview(std::shared_ptr<const Library> library, const Host::DecodeLimits& limits)
    : _library(std::move(library)), _files(Host::DecodeSettings{limits}),
      _preview(_library->Plugins(), _library->Environment(), _files)
{}

Image Preview::Render(const Material& material, const std::string& mesh,
                      const Host::PreviewOptions& options) const
{
    RequireUsable(options);
    const Host::MaterialDocument document = material.CopyDocument();
    const py::gil_scoped_release release;
    const std::lock_guard lock(_mutex);
    Host::ProblemList problems;
    Host::Picture picture =
        _preview.RenderMaterial(document, Host::FindMesh(mesh, _files), options, problems);
    return {std::move(picture), problems.Problems()};
}

std::vector<Image> Preview::RenderNodes(const Material& material, const std::string& mesh,
                                        const Host::PreviewOptions& options,
                                        const std::vector<std::string>& nodes) const
{
    RequireUsable(options);
    const Host::MaterialDocument document = material.CopyDocument();
    const py::gil_scoped_release release;
    const std::lock_guard lock(_mutex);
    Host::ProblemList problems;
    std::vector<Host::Picture> pictures =
        _preview.RenderNodes(document, Host::FindMesh(mesh, _files), options, nodes, problems);
    std::vector<Image> images;
    images.reserve(pictures.size());
    for (Host::Picture& picture : pictures)
        images.push_back({std::move(picture), problems.Problems()});
    return images;
}

std::string DrawGraph(const Material& material, const GraphSettings& settings)
{
    const std::string& format = settings.Format;
    if (format != "svg" && format != "png" && format != "dot") {
        throw Host::HostError(
            {}, Materials::Compose("unknown format ", Host::Excerpt(format),
                                   Host::SuggestName(format, {{"svg"}, {"png"}, {"dot"}})));
    }
    const Library& library = material.GetLibrary();
    OpenedCopy copy = material.OpenCopy();
    const py::gil_scoped_release release;
    Host::Drawing drawing;
    if (settings.IsShader) {
        Host::GeneratedShader shader;
        Host::CompleteShader(copy.Graph, library.Environment(), shader, copy.Problems);
        drawing = Host::DrawShader(shader, copy.Problems);
    } else {
        Host::CheckMaterial(copy.Graph, copy.File, library.Environment(), &library.TargetCheck(),
                            copy.Problems);
        std::map<std::string, Host::Picture> images;
        if (format != "dot") {
            images = settings.HasThumbnails
                         ? Tool::DrawThumbnails(copy.Graph, library.Plugins(),
                                                library.Environment(), {}, copy.Problems)
                         : Host::IconsOfNodes(copy.Graph, library.Plugins(), library.NodeFiles());
        }
        drawing = Host::DrawMaterial(copy.Graph, copy.Problems, images);
    }
    if (format == "dot")
        return drawing.Dot;
    return Host::RenderPicture(drawing, format == "svg" ? Host::PictureFormat::Svg
                                                        : Host::PictureFormat::Png);
}

} // namespace Mox::Python
