#include "mox/document/AnnotationText.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr std::string_view decimalDigits = "0123456789";
constexpr std::string_view hexadecimalDigits = "0123456789abcdef";
constexpr std::string_view farthestText = "10000000";

bool HasOnly(std::string_view text, std::string_view characters)
{
    return text.find_first_not_of(characters) == std::string_view::npos;
}

/// Returns whether a string is an integer from 0 to the largest coordinate.
bool IsDistance(std::string_view text)
{
    return text == farthestText ||
           (!text.empty() && text.size() < farthestText.size() && HasOnly(text, decimalDigits));
}

std::optional<DocumentPoint> ParsePoint(std::string_view text)
{
    const std::size_t comma = std::min(text.find(','), text.size());
    const std::string_view x = text.substr(0, comma);
    const std::string_view y = text.substr(std::min(comma + 1, text.size()));
    if (!IsCoordinate(x) || !IsCoordinate(y))
        return std::nullopt;
    return DocumentPoint{*ParseInteger(x), *ParseInteger(y)};
}

} // namespace

bool IsCoordinate(std::string_view text)
{
    return IsDistance(text.substr(text.starts_with('-') ? 1 : 0));
}

bool IsExtent(std::string_view text)
{
    return IsDistance(text) && !text.starts_with('0');
}

bool IsDisplayColour(std::string_view text)
{
    return text.size() == 7 && text.starts_with('#') && HasOnly(text.substr(1), hexadecimalDigits);
}

bool ArePoints(std::string_view text)
{
    return ParsePoints(text).has_value();
}

std::optional<std::vector<DocumentPoint>> ParsePoints(std::string_view text)
{
    std::vector<DocumentPoint> points;
    while (true) {
        const std::size_t blank = text.find(' ');
        const auto point = ParsePoint(text.substr(0, blank));
        if (!point)
            return std::nullopt;
        points.push_back(*point);
        if (blank == std::string_view::npos)
            return points;
        text.remove_prefix(blank + 1);
    }
}

std::string FormatPoints(const std::vector<DocumentPoint>& points)
{
    std::string text;
    for (const DocumentPoint& point : points)
        text += Compose(text.empty() ? "" : " ", point.X, ",", point.Y);
    return text;
}

std::vector<DocumentValue> AttributesOf(const DocumentEdge& edge)
{
    std::vector<DocumentValue> values = {
        {"tail", edge.Tail},
        {"tailPort", edge.TailPort},
        {"head", edge.Head},
        {"headPort", edge.HeadPort},
    };
    if (!edge.Points.empty())
        values.push_back({"points", FormatPoints(edge.Points)});
    return values;
}

std::vector<DocumentValue> AttributesOf(const DocumentAnnotation& annotation)
{
    std::vector<DocumentValue> values = {
        {"id", annotation.Id},
        {"kind", std::string(FormatAnnotationKind(annotation.Kind))},
        {"text", annotation.Text},
        {"x", Compose(annotation.Corner.X)},
        {"y", Compose(annotation.Corner.Y)},
        {"width", Compose(annotation.Width)},
        {"height", Compose(annotation.Height)},
    };
    if (!annotation.Colour.empty())
        values.push_back({"colour", annotation.Colour});
    return values;
}

} // namespace Mox::Host
