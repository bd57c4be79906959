#pragma once

#include "mox/interchange/InterchangeGraph.h"

namespace Mox::Host {

/// Evaluates a step of a formula that does not require a node, because all inputs are constants or
/// the node has no effect, such as a multiplication by 1. Returns nothing for other steps.
std::optional<InterchangeValue> FoldCall(const InterchangeNode& node,
                                         const InterchangeGraph::Values& inputs);

} // namespace Mox::Host
