#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/MaterialGraph.h"

namespace Mox::Host {

/// Computes the change that lays out nodes and annotations of a material. It sets the "PositionX"
/// and "PositionY" of nodes (the upper-left corner in pixels), the corners of annotations, and the
/// sizes of frames. Values that are already correct are not set, so a second layout changes
/// nothing.
///
/// The content of a frame stays in the frame and is laid out separately; the frame is then resized
/// to fit and placed like a node. If edges leave a frame and re-enter it through other nodes, some
/// of these edges run from right to left. Notes are placed like nodes without edges. Edges of nodes
/// that are laid out lose their points.
/// @param parts to be laid out; if empty, all. The others stay in place, and the area of the parts
///        that are laid out keeps its upper-left corner; for all parts, that corner is 0, 0.
/// @throws HostError if there is no such node or annotation
GraphChange LayOutMaterial(const MaterialGraph& graph, const GraphParts& parts = {});

} // namespace Mox::Host
