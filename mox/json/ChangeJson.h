#pragma once

#include "mox/graph/GraphChange.h"

#include <string>
#include <string_view>

namespace Mox::Host {

/// Version of the JSON format of changes, see docs/json.md.
constexpr int ChangeJsonVersion = 1;

/// Formats a change with its version as JSON, with indented lines.
std::string FormatChangeAsJson(const GraphChange& change);

/// Parses a change. The nodes and other items that it refers to need not exist, but each value must
/// be one that a document can store.
/// @param source name of the input in messages, such as its file name
/// @throws HostError with line and column if the input is not valid JSON, otherwise with the JSON
///         pointer, node and port of the first invalid value
GraphChange ParseChangeJson(std::string_view text, const std::string& source);

} // namespace Mox::Host
