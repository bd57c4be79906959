#pragma once

#include "mox/document/MaterialDiff.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginBinding.h"
#include "mox/host/Problem.h"
#include "mox/json/JsonCursor.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Version of the JSON formats that Mox outputs, see docs/json.md.
constexpr int RecordJsonVersion = 1;

/// The JSON format of the parts of a material, as described in docs/json.md. All input is checked
/// against the rules for material documents, so that a document with it can be written and read
/// again.

Json ToJson(const DocumentNode& node);
Json ToJson(const DocumentProperty& property);
Json ToJson(const DocumentEdge& edge);
Json ToJson(const DocumentBinding& binding);
Json ToJson(const DocumentAnnotation& annotation);
Json ToJson(const std::vector<DocumentValue>& values); ///< an object

/// All parts of a document except comments that do not belong to a record.
Json ToJson(const MaterialDocument& document);

/// Severity, rule, message and location.
Json ToJson(const Problem& problem);

/// Problems as an array, in the same order.
Json ToJson(const std::vector<Problem>& problems);

/// The subject of a difference, and its description.
Json ToJson(const MaterialDifference& difference);

/// Adds the known parts of a location to an object.
void AddPlace(const Place& place, Json& object);

/// Read records from objects, which may have additional members.
/// @throws HostError as JsonCursor does, also for a value that the rules for documents do not allow
DocumentNode ReadNode(const JsonCursor& object);
DocumentProperty ReadProperty(const JsonCursor& object);
DocumentEdge ReadEdge(const JsonCursor& object);
DocumentBinding ReadBinding(const JsonCursor& object);
DocumentAnnotation ReadAnnotation(const JsonCursor& object);
std::vector<DocumentValue> ReadDescription(const JsonCursor& object);
std::vector<DocumentValue> ReadRenderState(const JsonCursor& object);

/// Format records as JSON with a version and indented lines, as described in docs/json.md.
std::string FormatBindingsAsJson(const std::vector<PluginBinding>& bindings);
std::string FormatDifferencesAsJson(const std::vector<MaterialDifference>& differences);

} // namespace Mox::Host
