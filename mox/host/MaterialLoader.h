#pragma once

#include "mox/host/MaterialDocument.h"
#include "mox/host/MaterialGraph.h"
#include "mox/host/PluginSet.h"

namespace Mox::Host {

/// Makes the authoring graph of a document: creates the nodes, loads their stored properties, lets
/// them build their ports, and lays the edges. A type that no plug-in offers becomes a placeholder.
/// @throws HostError with the line of what does not fit: a value, a reference to a missing node or
///         round in a circle, a set of properties that is too new, an edge
MaterialGraph LoadMaterial(const MaterialDocument& document, const PluginSet& plugins);

} // namespace Mox::Host
