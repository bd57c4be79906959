#pragma once

#include "mox/document/MaterialDocument.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// The text forms of what documents hold for editors alone. No locale has an influence.

/// "frame" or "note".
constexpr std::string_view FormatAnnotationKind(AnnotationKind kind)
{
    return kind == AnnotationKind::Frame ? "frame" : "note";
}

/// Frame for "frame", Note for any other word.
constexpr AnnotationKind ParseAnnotationKind(std::string_view word)
{
    return word == FormatAnnotationKind(AnnotationKind::Frame) ? AnnotationKind::Frame
                                                               : AnnotationKind::Note;
}

/// The largest coordinate, on both sides of the origin, and the largest width and height.
constexpr std::int32_t farthestCoordinate = 10'000'000;

bool IsCoordinate(std::string_view text);
bool IsExtent(std::string_view text); ///< a width or height
bool IsDisplayColour(std::string_view text);
bool ArePoints(std::string_view text);

/// Points such as "10,20 -30,40"; nothing if the text is not one or more of them.
std::optional<std::vector<DocumentPoint>> ParsePoints(std::string_view text);
std::string FormatPoints(const std::vector<DocumentPoint>& points);

/// The attributes of an element in the canonical order, without points or a colour if there are
/// none.
std::vector<DocumentValue> AttributesOf(const DocumentEdge& edge);
std::vector<DocumentValue> AttributesOf(const DocumentAnnotation& annotation);

} // namespace Mox::Host
