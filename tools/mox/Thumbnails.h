#pragma once

#include "mox/graph/MaterialGraph.h"
#include "mox/host/Picture.h"
#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

#include <filesystem>
#include <map>
#include <string>

namespace Mox::Tool {

/// What each node of a material puts out, as a small picture by node id. A node without outputs,
/// such as the surface, shows the whole material.
/// @throws Host::HostError if there is no Vulkan device
std::map<std::string, Host::Picture> DrawThumbnails(const std::filesystem::path& document,
                                                    const Host::MaterialGraph& graph,
                                                    const Host::PluginSet& plugins,
                                                    const Host::Environment& environment);

} // namespace Mox::Tool
