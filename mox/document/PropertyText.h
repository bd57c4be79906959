#pragma once

#include "mox/authoring/GuiProperty.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The text forms of property kinds and values in documents. No locale has an influence.

/// The word of a kind, such as "colour", or an empty text for a value that is not a kind.
constexpr std::string_view FormatKind(Materials::GuiPropertyKind kind)
{
    constexpr std::string_view words[] = {"bool",   "integer", "float", "string",
                                          "colour", "enum",    "node"}; // in the kinds' order
    const auto index = static_cast<std::size_t>(kind);
    return index < std::size(words) ? words[index] : std::string_view();
}

std::optional<Materials::GuiPropertyKind> ParseKind(std::string_view word);

/// A whole decimal number of 32 bits, without blanks; else nothing.
std::optional<std::int32_t> ParseInteger(std::string_view text);

/// Whether a text is a number: decimal with a point, without spaces, or "inf" or "nan", perhaps
/// with a minus. It may be out of the range of a float.
bool IsNumber(std::string_view text);

/// A number in the range of a float; else nothing.
std::optional<float> ParseFloat(std::string_view text);

/// Whether a text is three numbers with one space between them.
bool IsColour(std::string_view text);

/// Gives property the kind and the value of a text: "true" or "false", a whole number, a number,
/// any text, three numbers with a blank between them, an enum word. A Node property takes its kind
/// only; which node an id means is the caller's to know.
/// @returns false, without any change, if the text is no value of that kind
bool SetFromText(Materials::GuiProperty& property, Materials::GuiPropertyKind kind,
                 const std::string& text);

/// The text that SetFromText reads the value back from, to the last bit. For a Node property it is
/// empty.
std::string FormatValue(const Materials::GuiProperty& property);

} // namespace Mox::Host
