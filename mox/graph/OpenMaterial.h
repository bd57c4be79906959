#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"

#include <filesystem>

namespace Mox::Host {

/// Builds the authoring graph of a document: creates the nodes, loads their stored properties, lets
/// them build their ports, and lays the edges. A type that no plug-in offers becomes a placeholder.
///
/// What does not fit is reported with its line and not shown, and loading continues. Unknown types
/// and properties are only warnings.
/// @param maker its plug-ins must outlive the graph
/// @param problems receives what MaterialGraph::ReportProblems reports
MaterialGraph LoadMaterial(MaterialDocument document, NodeMaker maker, ProblemList& problems);

/// The same with the nodes of plug-ins, which must outlive the graph.
MaterialGraph LoadMaterial(MaterialDocument document, const PluginSet& plugins,
                           ProblemList& problems);

/// The same for callers that stop at the first error.
/// @throws HostError with it
MaterialGraph LoadMaterial(MaterialDocument document, const PluginSet& plugins);

/// Reads a material from a file, builds its authoring graph and resolves it.
/// @param problems takes all that is wrong on the way; with an error among them the graph lacks
///        what the errors name
MaterialGraph OpenMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                           ProblemList& problems);

/// The same for a document that has been read.
/// @param problems of reading it; receives all others
MaterialGraph OpenMaterial(MaterialDocument document, const PluginSet& plugins,
                           ProblemList& problems);

} // namespace Mox::Host
