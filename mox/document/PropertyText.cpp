#include "mox/document/PropertyText.h"

#include <array>
#include <charconv>
#include <iterator>

namespace Mox::Host {

using Materials::GuiProperty;
using Materials::GuiPropertyKind;

namespace {

/// In the order of GuiPropertyKind.
constexpr std::string_view kindWords[] = {"bool",   "integer", "float", "string",
                                          "colour", "enum",    "node"};

template <class Number>
std::optional<Number> ParseNumber(std::string_view text)
{
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<std::array<float, 3>> ParseColour(std::string_view text)
{
    std::array<float, 3> colour{};
    for (std::size_t i = 0; i < colour.size(); ++i) {
        const bool isLast = i + 1 == colour.size();
        const std::size_t end = isLast ? text.size() : text.find(' ');
        if (end == std::string_view::npos)
            return std::nullopt;
        const auto value = ParseFloat(text.substr(0, end));
        if (!value)
            return std::nullopt;
        colour[i] = *value;
        text.remove_prefix(isLast ? end : end + 1);
    }
    return colour;
}

/// The shortest text that reads back as the same float.
std::string FormatExactly(float value)
{
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
}

} // namespace

std::string_view FormatKind(GuiPropertyKind kind)
{
    const auto index = static_cast<std::size_t>(kind);
    return index < std::size(kindWords) ? kindWords[index] : std::string_view();
}

std::optional<GuiPropertyKind> ParseKind(std::string_view word)
{
    for (std::size_t i = 0; i < std::size(kindWords); ++i) {
        if (kindWords[i] == word)
            return static_cast<GuiPropertyKind>(i);
    }
    return std::nullopt;
}

std::optional<std::int32_t> ParseInteger(std::string_view text)
{
    return ParseNumber<std::int32_t>(text);
}

std::optional<float> ParseFloat(std::string_view text)
{
    // from_chars knows more words than documents do, such as "INFINITY" and "nan(7)".
    const std::string_view size = text.substr(text.starts_with('-') ? 1 : 0);
    const bool isWord = size == "inf" || size == "nan";
    if (!isWord && size.find_first_not_of("0123456789.eE+-") != std::string_view::npos)
        return std::nullopt;
    return ParseNumber<float>(text);
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
        // A stored word stands for itself; the node that it is loaded into knows the choices.
        property.SetString(text);
        property.Kind = GuiPropertyKind::Enum;
        return true;
    case GuiPropertyKind::Node:
        property.Kind = GuiPropertyKind::Node;
        return true;
    }
    return false;
}

std::string FormatValue(const GuiProperty& property)
{
    switch (property.Kind) {
    case GuiPropertyKind::Bool:
        return property.Integer == 1 ? "true" : "false";
    case GuiPropertyKind::Integer:
        return std::to_string(property.Integer);
    case GuiPropertyKind::Float:
        return FormatExactly(property.Floats[0]);
    case GuiPropertyKind::Colour:
        return FormatExactly(property.Floats[0]) + " " + FormatExactly(property.Floats[1]) + " " +
               FormatExactly(property.Floats[2]);
    case GuiPropertyKind::String:
    case GuiPropertyKind::Enum:
        return property.Text;
    case GuiPropertyKind::Node:
        break;
    }
    return {};
}

} // namespace Mox::Host
