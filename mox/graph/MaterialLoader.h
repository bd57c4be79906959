#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"

namespace Mox::Host {

/// Makes the authoring graph of a document: creates the nodes, loads their stored properties, lets
/// them build their ports, and lays the edges. A type that no plug-in offers becomes a placeholder.
///
/// Whatever does not fit is reported with its line, and skipped; loading goes on behind it. So the
/// graph holds the document without what the errors name, and without the edges of a node that
/// cannot build its ports. Types and properties that are not known are warnings only, since nothing
/// of them is lost.
/// @param maker what it makes nodes from must outlive the graph
MaterialGraph LoadMaterial(const MaterialDocument& document, NodeMaker maker,
                           ProblemList& problems);

/// The same with the nodes of plug-ins, which must outlive the graph.
MaterialGraph LoadMaterial(const MaterialDocument& document, const PluginSet& plugins,
                           ProblemList& problems);

/// The same for callers that stop at the first error.
/// @throws HostError with it
MaterialGraph LoadMaterial(const MaterialDocument& document, const PluginSet& plugins);

} // namespace Mox::Host
