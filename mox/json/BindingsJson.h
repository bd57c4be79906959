#pragma once

#include "mox/host/PluginBinding.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Bindings as JSON in lines, as docs/json.md describes it.
std::string FormatBindingsAsJson(const std::vector<PluginBinding>& bindings);

} // namespace Mox::Host
