#include "Thumbnails.h"

#include "mox/document/MaterialDocument.h"
#include "mox/preview/MaterialPreview.h"
#include "mox/preview/MeshFile.h"

namespace Mox::Tool {

std::map<std::string, Host::Picture> DrawThumbnails(const std::filesystem::path& file,
                                                    const Host::MaterialGraph& graph,
                                                    const Host::PluginSet& plugins,
                                                    const Host::Environment& environment)
{
    constexpr std::uint32_t size = 96;
    const Host::MaterialDocument document = Host::ReadMaterialDocument(file);
    const Host::MaterialPreview preview(plugins, environment);
    const Host::Mesh plane = Host::FindMesh("plane");
    const Host::Mesh sphere = Host::FindMesh("sphere");
    std::map<std::string, Host::Picture> thumbnails;
    for (const Host::MaterialGraph::Node& node : graph.Nodes()) {
        if (node.IsPlaceholder)
            continue;
        const bool isWhole = node.Gui->OutputPorts.empty();
        Host::PreviewOptions options;
        options.Width = size;
        options.Height = size;
        options.Node = isWhole ? "" : node.Id;
        Host::ProblemList problems; // the drawing of the graph says what is wrong
        thumbnails.emplace(
            node.Id, preview.RenderMaterial(document, isWhole ? sphere : plane, options, problems));
    }
    return thumbnails;
}

} // namespace Mox::Tool
