#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"

#include <string>

/// All records of a document, lines excepted.
std::string FormatDocument(const Mox::Host::MaterialDocument& document);

/// What a document does not have: values and flags of all properties, ports with all they hold, and
/// the edge lists of the nodes, sorted. The description of a placeholder is left out, since it is
/// another one after loading.
std::string DescribeNodes(const Mox::Host::MaterialGraph& graph);

/// All that a graph is: its document, nodes and edges, and what is wrong, lines excepted.
std::string DescribeGraph(const Mox::Host::MaterialGraph& graph);

/// One line for each problem: level, rule, place and message.
std::string FormatProblems(const Mox::Host::ProblemList& problems);
