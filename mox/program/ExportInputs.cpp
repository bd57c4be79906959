#include "mox/program/ExportInputs.h"

namespace Mox::Host {

std::vector<std::filesystem::path> ExportInputs(const Environment& environment,
                                                const PluginSet& plugins)
{
    std::vector<std::filesystem::path> inputs = environment.Files;
    for (const Plugin& plugin : plugins.Plugins())
        inputs.push_back(plugin.File());
    return inputs;
}

} // namespace Mox::Host
