#pragma once

#include "mox/host/PluginSet.h"

#include <string>
#include <vector>

namespace Mox::Tool {

/// Options that all commands share.
struct CommonOptions
{
    std::vector<std::string> PluginFolders; ///< searched before the default folder
    std::vector<std::string> NodeFolders;   ///< with node files, searched before all others
};

/// Loads the plug-ins from the folders given as options, from those in the environment variable
/// MOX_PLUGIN_PATH, and from the default folder, in this order. If several plug-ins provide a type,
/// the first one is used. Each folder is searched only once. Before loading, MOX_NODE_PATH is set
/// to include the node file folders given as options. Messages about unknown types name these
/// options.
/// @throws Host::HostError as PluginSet::LoadFolder does, or if a node file folder is missing
Host::PluginSet LoadPlugins(const CommonOptions& common);

} // namespace Mox::Tool
