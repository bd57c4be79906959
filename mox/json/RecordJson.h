#pragma once

#include "mox/document/MaterialDiff.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginBinding.h"
#include "mox/host/Problem.h"
#include "mox/json/JsonCursor.h"

#include <string>
#include <vector>

namespace Mox::Host {

/// Version of the JSON forms that Mox prints, see docs/json.md.
constexpr int RecordJsonVersion = 1;

/// The JSON form of what a material is made of, as docs/json.md describes it. What is read has
/// passed the rules of material documents, so that a document that holds it can be written and read
/// again.

Json ToJson(const DocumentNode& node);
Json ToJson(const DocumentProperty& property);
Json ToJson(const DocumentEdge& edge);
Json ToJson(const DocumentBinding& binding);
Json ToJson(const DocumentAnnotation& annotation);
Json ToJson(const std::vector<DocumentValue>& values); ///< an object

/// All parts of a document but for the comments that stand with none of its records.
Json ToJson(const MaterialDocument& document);

/// Severity, rule, message, and the place.
Json ToJson(const Problem& problem);

/// Problems as an array, in their order.
Json ToJson(const std::vector<Problem>& problems);

/// What a difference is of, and its text.
Json ToJson(const MaterialDifference& difference);

/// Adds what is known of a place to an object.
void AddPlace(const Place& place, Json& object);

/// Read records from objects, which may have other members too.
/// @throws HostError as JsonCursor does, also for a value that the rules of documents refuse
DocumentNode ReadNode(const JsonCursor& object);
DocumentProperty ReadProperty(const JsonCursor& object);
DocumentEdge ReadEdge(const JsonCursor& object);
DocumentBinding ReadBinding(const JsonCursor& object);
DocumentAnnotation ReadAnnotation(const JsonCursor& object);
std::vector<DocumentValue> ReadDescription(const JsonCursor& object);
std::vector<DocumentValue> ReadRenderState(const JsonCursor& object);

/// Bindings as JSON in lines, as docs/json.md describes it.
std::string FormatBindingsAsJson(const std::vector<PluginBinding>& bindings);

} // namespace Mox::Host
