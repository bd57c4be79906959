#include "mox/program/ExportInputs.h"

#include "mox/document/DocumentInputs.h"

namespace Mox::Host {

std::vector<std::filesystem::path> ExportInputs(const MaterialGraph& graph,
                                                const std::filesystem::path& document,
                                                const Environment& environment,
                                                const PluginSet& plugins)
{
    std::vector<std::filesystem::path> inputs = TextureFiles(graph.Bindings, document);
    inputs.insert(inputs.end(), environment.Files.begin(), environment.Files.end());
    for (const Plugin& plugin : plugins.Plugins())
        inputs.push_back(plugin.File());
    return inputs;
}

} // namespace Mox::Host
