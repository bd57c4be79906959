#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/MaterialGraph.h"
#include "mox/host/Problem.h"

#include <string>

/// All records of a document, except for line numbers.
std::string FormatDocument(const Mox::Host::MaterialDocument& document);

/// What a document does not contain: values and flags of all properties, ports with all their
/// fields, and the edge lists of the nodes, sorted. The description of a placeholder is omitted,
/// because loading changes it.
std::string DescribeNodes(const Mox::Host::MaterialGraph& graph);

/// The complete state of a graph: its document, nodes and edges, and problems, except for line
/// numbers.
std::string DescribeGraph(const Mox::Host::MaterialGraph& graph);

/// One line for each problem: level, rule, place and message.
std::string FormatProblems(const Mox::Host::ProblemList& problems);
