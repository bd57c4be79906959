#pragma once

#include "mox/authoring/GuiProperty.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The text forms of property kinds and values in documents. No locale has an influence.

/// The word of a kind, such as "colour", or an empty text for a value that is no kind.
std::string_view FormatKind(Materials::GuiPropertyKind kind);
std::optional<Materials::GuiPropertyKind> ParseKind(std::string_view word);

/// A whole decimal number of 32 bits, without blanks; else nothing.
std::optional<std::int32_t> ParseInteger(std::string_view text);

/// A decimal number with a point, without blanks, or "inf" or "nan", perhaps with a minus; else
/// nothing.
std::optional<float> ParseFloat(std::string_view text);

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
