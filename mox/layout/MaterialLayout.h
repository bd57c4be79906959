#pragma once

#include "mox/graph/GraphChange.h"
#include "mox/graph/GraphParts.h"
#include "mox/graph/MaterialGraph.h"

namespace Mox::Host {

/// The change that lays out nodes and annotations of a material. It sets the "PositionX" and
/// "PositionY" of nodes, the upper left corner of each in pixels, the corners of annotations, and
/// the sizes of frames. What stands where it should already is not set, so laying out twice changes
/// nothing the second time.
///
/// What is in a frame stays in it and is laid out by itself; the frame then fits around it and is
/// placed like a node. Where edges leave a frame and come back to it through other nodes, some of
/// these edges run from right to left. Notes are placed like nodes without edges. Edges at nodes
/// that are laid out lose their points.
/// @param parts to be laid out; none for all. The others stay where they are, and the area of those
///        that are laid out keeps its upper left corner, which is at 0, 0 for all.
/// @throws HostError if there is no such node or annotation
GraphChange LayOutMaterial(const MaterialGraph& graph, const GraphParts& parts = {});

} // namespace Mox::Host
