#pragma once

#include <string>
#include <vector>

namespace Mox::Tool {

/// Options that every command shares.
struct CommonOptions
{
    std::vector<std::string> PluginFolders; ///< searched before the default one
    std::vector<std::string> NodeFolders;   ///< with node files, searched before all others
};

} // namespace Mox::Tool
