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

/// Renders the outputs of each node of a material as a small image, by node id. The image of a node
/// without outputs, such as the surface, shows the whole material.
/// @param limits of textures
/// @param problems receives a warning for each texture that cannot be read
/// @throws Host::HostError if there is no Vulkan device
std::map<std::string, Host::Picture> DrawThumbnails(const Host::MaterialGraph& graph,
                                                    const Host::PluginSet& plugins,
                                                    const Host::Environment& environment,
                                                    const Host::DecodeLimits& limits,
                                                    Host::ProblemList& problems);

} // namespace Mox::Tool
