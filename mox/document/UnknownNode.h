#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/Problem.h"

#include <string>

namespace Mox::Host {

/// Returns the error message about an id that no node has.
std::string UnknownNode(const std::string& id);

/// Returns the same message with a suggestion, unless the document has very many nodes.
std::string UnknownNode(const std::string& id, const MaterialDocument& document);

/// Adds suggestions to the problems with the rule "unknown-node", whose messages are those of
/// UnknownNode. Only the first ones get a suggestion, because comparing ids takes time.
ProblemList WithSuggestions(const ProblemList& problems, const MaterialDocument& document);

} // namespace Mox::Host
