#include "LoadPlugins.h"

#include "mox/host/SearchFolders.h"
#include "mox/nodefile/NodeFolders.h"

#include <cstdlib>
#include <set>
#include <system_error>

namespace Mox::Tool {

namespace {

/// Prepends the folders given as options to the environment variable from which the plug-in for
/// node files reads its folders.
/// @throws Host::HostError if one of these folders, or of those in the variable, is not a folder
void SetNodePath(const CommonOptions& common)
{
    std::vector<std::string> folders = common.NodeFolders;
    for (const std::string& folder : Host::ReadSearchPath(Host::nodePathVariable))
        folders.push_back(folder);
    std::string path;
    for (const std::string& folder : folders) {
        std::error_code error;
        if (!std::filesystem::is_directory(folder, error)) {
            throw Host::HostError(Host::Place(folder),
                                  "is not a folder that can be searched for node files");
        }
        path += (path.empty() ? "" : ":") + folder;
    }
    if (!common.NodeFolders.empty())
        setenv(Host::nodePathVariable, path.c_str(), true);
}

} // namespace

Host::PluginSet LoadPlugins(const CommonOptions& common)
{
    SetNodePath(common);
    std::vector<std::string> folders = common.PluginFolders;
    for (const std::string& folder : Host::ReadSearchPath("MOX_PLUGIN_PATH"))
        folders.push_back(folder);
    folders.push_back(Host::DefaultPluginFolder().string());

    Host::PluginSet plugins;
    plugins.SetSourceHint("--nodes DIR or MOX_NODE_PATH adds node files, "
                          "--plugins DIR or MOX_PLUGIN_PATH adds plug-ins");
    std::set<std::filesystem::path> searched;
    for (const std::string& folder : folders) {
        if (searched.insert(std::filesystem::weakly_canonical(folder)).second)
            plugins.LoadFolder(folder);
    }
    return plugins;
}

} // namespace Mox::Tool
