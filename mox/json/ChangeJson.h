#pragma once

#include "mox/graph/GraphChange.h"

#include <string>
#include <string_view>

namespace Mox::Host {

/// Version of the JSON form of changes, see docs/json.md.
constexpr int ChangeJsonVersion = 1;

/// A change as JSON in lines, with its version.
std::string FormatChangeAsJson(const GraphChange& change);

/// Reads a change back. What it names need not be there, but no value can be one that a document
/// cannot hold.
/// @param source name of the text in messages, such as that of its file
/// @throws HostError with line and column where the text is not JSON, and else with the JSON
///         pointer, node and port of the first value that is not what belongs there
GraphChange ParseChangeJson(std::string_view text, const std::string& source);

} // namespace Mox::Host
