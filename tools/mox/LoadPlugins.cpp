#include "LoadPlugins.h"

#include <cstdlib>
#include <set>
#include <sstream>

namespace Mox::Tool {

namespace {

std::vector<std::string> SplitPath(const char* path)
{
    std::vector<std::string> folders;
    std::istringstream stream(path ? path : "");
    for (std::string folder; std::getline(stream, folder, ':');) {
        if (!folder.empty())
            folders.push_back(folder);
    }
    return folders;
}

} // namespace

Host::PluginSet LoadPlugins(const CommonOptions& common)
{
    std::vector<std::string> folders = common.PluginFolders;
    for (const std::string& folder : SplitPath(std::getenv("MOX_PLUGIN_PATH")))
        folders.push_back(folder);
    folders.push_back(Host::DefaultPluginFolder().string());

    Host::PluginSet plugins;
    std::set<std::filesystem::path> searched;
    for (const std::string& folder : folders) {
        if (searched.insert(std::filesystem::weakly_canonical(folder)).second)
            plugins.LoadFolder(folder);
    }
    return plugins;
}

} // namespace Mox::Tool
