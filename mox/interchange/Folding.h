#pragma once

#include "mox/interchange/InterchangeGraph.h"

namespace Mox::Host {

/// The result of a step of a formula that needs no node: of numbers alone, or where the node does
/// nothing, such as a product with 1. Otherwise nothing.
std::optional<InterchangeValue> FoldCall(const InterchangeNode& node,
                                         const InterchangeGraph::Values& inputs);

} // namespace Mox::Host
