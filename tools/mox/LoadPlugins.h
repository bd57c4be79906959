#pragma once

#include "Commands.h"
#include "mox/host/PluginSet.h"

namespace Mox::Tool {

/// The plug-ins beside the program and those of the folders that the user named.
/// @throws Host::HostError as PluginSet::LoadFolder does
Host::PluginSet LoadPlugins(const CommonOptions& common);

} // namespace Mox::Tool
