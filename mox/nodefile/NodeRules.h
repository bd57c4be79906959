#pragma once

#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFile.h"

namespace Mox::Host {

/// Checks that the parts of a node file are consistent: conditions and sources refer to existing
/// properties and values; for every setting, the names of inputs, outputs and samplers are
/// distinct, and there is an output and a body.
/// @param where position of the root element
/// @throws HostError at the invalid part
void CheckNodeRules(const NodeFile& file, const Place& where);

} // namespace Mox::Host
