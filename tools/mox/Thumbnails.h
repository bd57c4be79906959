#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/Picture.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"
#include "mox/program/Environment.h"

#include <map>
#include <string>

namespace Mox::Tool {

/// What each node of a material puts out, as a small picture by node id. A node without outputs,
/// such as the surface, shows the whole material.
/// @param limits of textures
/// @param problems takes a warning for each texture that cannot be read
/// @throws Host::HostError if there is no Vulkan device
std::map<std::string, Host::Picture> DrawThumbnails(const Host::MaterialGraph& graph,
                                                    const Host::PluginSet& plugins,
                                                    const Host::Environment& environment,
                                                    const Host::DecodeLimits& limits,
                                                    Host::ProblemList& problems);

} // namespace Mox::Tool
