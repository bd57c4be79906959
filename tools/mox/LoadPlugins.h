#pragma once

#include "mox/host/PluginSet.h"

#include <string>
#include <vector>

namespace Mox::Tool {

/// Options that every command shares.
struct CommonOptions
{
    std::vector<std::string> PluginFolders; ///< searched before the default one
    std::vector<std::string> NodeFolders;   ///< with node files, searched before all others
};

/// The plug-ins of the folders that the user named as options, of those in the environment variable
/// MOX_PLUGIN_PATH, and those beside the program, in this order: the first to offer a type supplies
/// it. A folder that is named twice is searched once.
/// Before that, sets MOX_NODE_PATH to the folders of node files that the user named.
/// @throws Host::HostError as PluginSet::LoadFolder does, or if a folder of node files is missing
Host::PluginSet LoadPlugins(const CommonOptions& common);

} // namespace Mox::Tool
