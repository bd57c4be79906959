#include "mox/program/CopyProof.h"

#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

namespace {

/// Takes a Cg name with an optional selection of components, such as "in_uv.xy", off the front.
/// @returns the name, or nothing if text does not start with one
std::optional<std::string> TakeOperand(std::string_view& text)
{
    constexpr std::string_view components = "xyzwrgba";
    std::size_t length = 0;
    while (length < text.size() && ShaderNode::IsValidCgName({'_', text[length]}))
        ++length;
    if (length == 0)
        return std::nullopt;
    std::string name(text.substr(0, length));
    text.remove_prefix(length);
    if (text.starts_with('.')) {
        const std::size_t end = text.find_first_not_of(components, 1);
        if (end == 1)
            return std::nullopt;
        text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    }
    return name;
}

bool TakeText(std::string_view& text, std::string_view wanted)
{
    const bool isThere = text.starts_with(wanted);
    if (isThere)
        text.remove_prefix(wanted.size());
    return isThere;
}

bool IsCopyingLine(const ShaderNode& function, std::string_view line)
{
    TakeText(line, "\t");
    const auto target = TakeOperand(line);
    if (!target || !TakeText(line, " = "))
        return false;
    const auto source = TakeOperand(line);
    if (!source || line != ";")
        return false;
    const std::int32_t output = function.FindOutputPort(*target);
    const std::int32_t input = function.FindInputPort(*source);
    return output >= 0 && input >= 0 &&
           function.Outputs[static_cast<std::size_t>(output)].Type.Component ==
               function.Inputs[static_cast<std::size_t>(input)].Type.Component;
}

} // namespace

bool IsMereCopy(const ShaderNode& function)
{
    std::string_view code = function.Code;
    while (!code.empty()) {
        const std::size_t end = code.find('\n');
        if (!IsCopyingLine(function, code.substr(0, end)))
            return false;
        code.remove_prefix(end == std::string_view::npos ? code.size() : end + 1);
    }
    return true;
}

} // namespace Mox::Host
