#pragma once

#include "mox/host/PluginNode.h"

#include <string>

namespace Mox::Host {

/// A node as it stands in a document, with all its properties in the order of its bag.
/// @param id under which the node stands in the document
std::string FormatNodeFragment(const PluginNode& node, const std::string& id);

} // namespace Mox::Host
