#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/PluginSet.h"
#include "mox/host/Problem.h"

#include <filesystem>

namespace Mox::Host {

/// Builds the authoring graph of a document: creates the nodes, loads their stored properties, lets
/// them build their ports, and adds the edges. A type that no plug-in provides becomes a
/// placeholder.
///
/// Invalid records are reported with their lines and not shown, and loading continues. Unknown
/// types and properties only cause warnings.
/// @param maker its plug-ins must outlive the graph
/// @param problems receives the problems that MaterialGraph::ReportProblems reports
MaterialGraph LoadMaterial(MaterialDocument document, NodeMaker maker, ProblemList& problems);

/// The same with nodes from plug-ins, which must outlive the graph.
MaterialGraph LoadMaterial(MaterialDocument document, const PluginSet& plugins,
                           ProblemList& problems);

/// Reads a material from a file, builds its authoring graph and resolves it.
/// @param problems receives all problems; if there are errors, the graph lacks the items they name
MaterialGraph OpenMaterial(const std::filesystem::path& file, const PluginSet& plugins,
                           ProblemList& problems);

/// The same for a document that has already been read.
/// @param problems of reading the document; receives all others
MaterialGraph OpenMaterial(MaterialDocument document, const PluginSet& plugins,
                           ProblemList& problems);

} // namespace Mox::Host
