#include "mox/document/PropertyText.h"

#include <array>
#include <charconv>
#include <system_error>

namespace Mox::Host {

using Materials::GuiProperty;
using Materials::GuiPropertyKind;

namespace {

/// Parses the whole string as a number.
template <class Number>
std::errc ReadNumber(std::string_view text, Number& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return end == text.data() + text.size() ? error : std::errc::invalid_argument;
}

std::errc ReadFloat(std::string_view text, float& value)
{
    // from_chars accepts more keywords than documents allow, such as "INFINITY" and "nan(7)".
    const std::string_view size = text.substr(text.starts_with('-') ? 1 : 0);
    const bool isWord = size == "inf" || size == "nan";
    if (!isWord && size.find_first_not_of("0123456789.eE+-") != std::string_view::npos)
        return std::errc::invalid_argument;
    return ReadNumber(text, value);
}

/// Calls take with each of three strings separated by single spaces.
/// @returns false if there are fewer than three, or if take returned false
template <class Take>
bool ForEachOfThree(std::string_view text, Take take)
{
    for (int i = 0; i < 2; ++i) {
        const std::size_t end = text.find(' ');
        if (end == std::string_view::npos || !take(text.substr(0, end)))
            return false;
        text.remove_prefix(end + 1);
    }
    return take(text);
}

std::optional<std::array<float, 3>> ParseColour(std::string_view text)
{
    std::array<float, 3> colour{};
    auto next = colour.begin();
    const auto take = [&](std::string_view number) {
        return ReadFloat(number, *next++) == std::errc();
    };
    return ForEachOfThree(text, take) ? std::optional(colour) : std::nullopt;
}

} // namespace

std::optional<GuiPropertyKind> ParseKind(std::string_view word)
{
    for (auto kind = GuiPropertyKind(); !FormatKind(kind).empty();
         kind = static_cast<GuiPropertyKind>(static_cast<int>(kind) + 1)) {
        if (FormatKind(kind) == word)
            return kind;
    }
    return std::nullopt;
}

std::optional<std::int32_t> ParseInteger(std::string_view text)
{
    std::int32_t value = 0;
    return ReadNumber(text, value) == std::errc() ? std::optional(value) : std::nullopt;
}

bool IsNumber(std::string_view text)
{
    float value = 0;
    return ReadFloat(text, value) != std::errc::invalid_argument;
}

std::optional<float> ParseFloat(std::string_view text)
{
    float value = 0;
    return ReadFloat(text, value) == std::errc() ? std::optional(value) : std::nullopt;
}

bool IsColour(std::string_view text)
{
    return ForEachOfThree(text, IsNumber);
}

bool SetFromText(GuiProperty& property, GuiPropertyKind kind, const std::string& text)
{
    switch (kind) {
    case GuiPropertyKind::Bool:
        if (text != "true" && text != "false")
            return false;
        property.SetBool(text == "true");
        return true;
    case GuiPropertyKind::Integer:
        if (const auto value = ParseInteger(text)) {
            property.SetInt(*value);
            return true;
        }
        return false;
    case GuiPropertyKind::Float:
        if (const auto value = ParseFloat(text)) {
            property.SetFloat(*value);
            return true;
        }
        return false;
    case GuiPropertyKind::Colour:
        if (const auto colour = ParseColour(text)) {
            property.SetColour((*colour)[0], (*colour)[1], (*colour)[2]);
            return true;
        }
        return false;
    case GuiPropertyKind::String:
        property.SetString(text);
        return true;
    case GuiPropertyKind::Enum:
        // The keyword is stored as it is; the node that loads it knows the choices.
        property.SetString(text);
        property.Kind = GuiPropertyKind::Enum;
        return true;
    case GuiPropertyKind::Node:
        property.Kind = GuiPropertyKind::Node;
        return true;
    }
    return false;
}

std::string FormatNumber(float value)
{
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
}

std::string FormatValue(const GuiProperty& property)
{
    switch (property.Kind) {
    case GuiPropertyKind::Bool:
        return property.Integer == 1 ? "true" : "false";
    case GuiPropertyKind::Integer:
        return std::to_string(property.Integer);
    case GuiPropertyKind::Float:
        return FormatNumber(property.Floats[0]);
    case GuiPropertyKind::Colour:
        return FormatNumber(property.Floats[0]) + " " + FormatNumber(property.Floats[1]) + " " +
               FormatNumber(property.Floats[2]);
    case GuiPropertyKind::String:
    case GuiPropertyKind::Enum:
        return property.Text;
    case GuiPropertyKind::Node:
        break;
    }
    return {};
}

} // namespace Mox::Host
