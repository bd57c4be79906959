#pragma once

#include "mox/document/MaterialDocument.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The string forms of the parts of a document that only editors use. They do not depend on the
/// locale.

/// Returns "frame" or "note".
constexpr std::string_view FormatAnnotationKind(AnnotationKind kind)
{
    return kind == AnnotationKind::Frame ? "frame" : "note";
}

/// Returns Frame for "frame" and Note for any other keyword.
constexpr AnnotationKind ParseAnnotationKind(std::string_view word)
{
    return word == FormatAnnotationKind(AnnotationKind::Frame) ? AnnotationKind::Frame
                                                               : AnnotationKind::Note;
}

/// The largest absolute coordinate, and the largest width and height.
constexpr std::int32_t farthestCoordinate = 10'000'000;

bool IsCoordinate(std::string_view text);
bool IsExtent(std::string_view text); ///< for widths and heights
bool IsDisplayColour(std::string_view text);
bool ArePoints(std::string_view text);

/// Parses points such as "10,20 -30,40"; returns nothing if the string is not a list of one or more
/// points.
std::optional<std::vector<DocumentPoint>> ParsePoints(std::string_view text);
std::string FormatPoints(const std::vector<DocumentPoint>& points);

/// Returns the attributes of an element in canonical order, without points or a colour if the
/// element has none.
std::vector<DocumentValue> AttributesOf(const DocumentEdge& edge);
std::vector<DocumentValue> AttributesOf(const DocumentAnnotation& annotation);

} // namespace Mox::Host
