#pragma once

#include "mox/authoring/GuiProperty.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The string forms of property kinds and values in documents. They do not depend on the locale.

/// Returns the keyword of a kind, such as "colour", or an empty string for an invalid kind.
constexpr std::string_view FormatKind(Materials::GuiPropertyKind kind)
{
    constexpr std::string_view words[] = {"bool",   "integer", "float", "string",
                                          "colour", "enum",    "node"}; // in the order of the kinds
    const auto index = static_cast<std::size_t>(kind);
    return index < std::size(words) ? words[index] : std::string_view();
}

std::optional<Materials::GuiPropertyKind> ParseKind(std::string_view word);

/// Parses a 32-bit decimal integer without spaces; returns nothing for any other string.
std::optional<std::int32_t> ParseInteger(std::string_view text);

/// Returns whether a string is a number: decimal with a point, without spaces, or "inf" or "nan",
/// with an optional minus sign. The number may exceed the range of a float.
bool IsNumber(std::string_view text);

/// Parses a number in the range of a float; returns nothing for any other string.
std::optional<float> ParseFloat(std::string_view text);

/// Returns whether a string consists of three numbers separated by single spaces.
bool IsColour(std::string_view text);

/// Sets the kind and the value of a property from a string: "true" or "false", an integer, a
/// number, any string, three numbers separated by single spaces, or an enumeration keyword. For a
/// Node property, it sets only the kind; the caller must resolve the id.
/// @returns false, without changing the property, if the string is not a value of that kind
bool SetFromText(Materials::GuiProperty& property, Materials::GuiPropertyKind kind,
                 const std::string& text);

/// Formats a number so that ParseFloat restores it exactly.
std::string FormatNumber(float value);

/// Formats a value so that SetFromText restores it exactly, to the last bit. Returns an empty
/// string for a Node property.
std::string FormatValue(const Materials::GuiProperty& property);

} // namespace Mox::Host
