#include "Thumbnails.h"

#include "mox/document/MaterialDocument.h"
#include "mox/preview/MaterialPreview.h"
#include "mox/preview/MeshShapes.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Tool {

namespace {

/// Adds texture warnings without duplicates from several images. Other problems are already
/// reported when the graph is drawn.
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

std::map<std::string, Host::Picture> DrawThumbnails(const Host::MaterialGraph& graph,
                                                    const Host::PluginSet& plugins,
                                                    const Host::Environment& environment,
                                                    const Host::DecodeLimits& limits,
                                                    Host::ProblemList& problems)
{
    constexpr std::uint32_t size = 96;
    const Host::MaterialDocument& document = graph.Document();
    Host::FileDecoder files({limits});
    const Host::MaterialPreview preview(plugins, environment, files);
    Host::PreviewOptions options;
    options.Width = size;
    options.Height = size;
    Host::ProblemList found;
    std::map<std::string, Host::Picture> thumbnails;
    std::vector<std::string> parts;
    std::optional<Host::Picture> whole;
    for (const Host::MaterialGraph::Node& node : graph.Nodes()) {
        if (node.IsPlaceholder)
            continue;
        if (!node.Gui.OutputPorts().empty()) {
            parts.push_back(node.Id);
            continue;
        }
        if (!whole)
            whole = preview.RenderMaterial(document, Host::MakeSphere(), options, found);
        thumbnails.emplace(node.Id, *whole);
    }
    std::vector<Host::Picture> pictures =
        preview.RenderNodes(document, Host::MakePlane(), options, parts, found);
    for (std::size_t i = 0; i < parts.size(); ++i)
        thumbnails.emplace(parts[i], std::move(pictures[i]));
    TakeTextureWarnings(found, problems);
    return thumbnails;
}

} // namespace Mox::Tool
