#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginSet.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Compares two materials by meaning and says in words what changed, a line each; nothing if they
/// mean the same.
///
/// Numbers are compared as numbers, a property that is left out as its default, and the order of
/// nodes, edges and properties does not count. A node that only got another id is told as renamed.
/// @param plugins know the defaults; of a type that none offers only what is stored is compared
std::vector<std::string> DescribeDifferences(const MaterialDocument& before,
                                             const MaterialDocument& after,
                                             const PluginSet& plugins);

} // namespace Mox::Host
