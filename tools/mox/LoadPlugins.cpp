#include "LoadPlugins.h"

namespace Mox::Tool {

Host::PluginSet LoadPlugins(const CommonOptions& common)
{
    Host::PluginSet plugins;
    plugins.LoadFolder(Host::DefaultPluginFolder());
    for (const std::string& folder : common.PluginFolders)
        plugins.LoadFolder(folder);
    return plugins;
}

} // namespace Mox::Tool
