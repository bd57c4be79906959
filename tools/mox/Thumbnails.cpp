#include "Thumbnails.h"

#include "mox/document/MaterialDocument.h"
#include "mox/preview/MaterialPreview.h"
#include "mox/preview/MeshShapes.h"

#include <algorithm>
#include <string_view>

namespace Mox::Tool {

namespace {

/// Each picture warns of the same textures. All else the drawing of the graph says already.
void TakeTextureWarnings(const Host::ProblemList& found, Host::ProblemList& problems)
{
    for (const Host::Problem& problem : found.Problems()) {
        const auto isSame = [&](const Host::Problem& other) {
            return other.Rule == problem.Rule && other.Format() == problem.Format();
        };
        if (problem.Rule == std::string_view("preview-texture") &&
            std::ranges::none_of(problems.Problems(), isSame))
            problems.Add(problem);
    }
}

} // namespace

std::map<std::string, Host::Picture>
DrawThumbnails(const std::filesystem::path& file, const Host::MaterialGraph& graph,
               const Host::PluginSet& plugins, const Host::Environment& environment,
               const Host::DecodeLimits& limits, Host::ProblemList& problems)
{
    constexpr std::uint32_t size = 96;
    const Host::MaterialDocument document = Host::ReadMaterialDocument(file);
    Host::FileDecoder files({limits});
    const Host::MaterialPreview preview(plugins, environment, files);
    const Host::Mesh plane = Host::MakePlane();
    const Host::Mesh sphere = Host::MakeSphere();
    std::map<std::string, Host::Picture> thumbnails;
    for (const Host::MaterialGraph::Node& node : graph.Nodes()) {
        if (node.IsPlaceholder)
            continue;
        const bool isWhole = node.Gui.OutputPorts().empty();
        Host::PreviewOptions options;
        options.Width = size;
        options.Height = size;
        options.Node = isWhole ? "" : node.Id;
        Host::ProblemList found;
        thumbnails.emplace(
            node.Id, preview.RenderMaterial(document, isWhole ? sphere : plane, options, found));
        TakeTextureWarnings(found, problems);
    }
    return thumbnails;
}

} // namespace Mox::Tool
