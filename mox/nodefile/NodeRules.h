#pragma once

#include "mox/host/HostError.h"
#include "mox/nodefile/NodeFile.h"

namespace Mox::Host {

/// Checks what the parts of a node file say of one another: conditions and sources name what there
/// is, and for every setting the names of inputs, outputs and samplers differ and there is an
/// output and a body.
/// @param where the root element
/// @throws HostError at the part that is wrong
void CheckNodeRules(const NodeFile& file, const Place& where);

} // namespace Mox::Host
