#include "mox/program/CopyProof.h"

#include <optional>
#include <string>
#include <string_view>

namespace Mox::Host {

namespace {

/// A statement that assigns one name, or some of its components, to another.
struct Assignment
{
    std::string To;
    std::string From;
};

/// Reads a line from its front.
class LineReader
{
public:
    explicit LineReader(std::string_view line) : _rest(line) {}

    bool IsAtEnd() const { return _rest.empty(); }

    bool Eat(std::string_view text)
    {
        if (!_rest.starts_with(text))
            return false;
        _rest.remove_prefix(text.size());
        return true;
    }

    /// What is made of these characters, or nothing.
    std::string_view EatAll(std::string_view characters)
    {
        const std::string_view eaten = _rest.substr(0, _rest.find_first_not_of(characters));
        _rest.remove_prefix(eaten.size());
        return eaten;
    }

    /// A name, and behind it perhaps a swizzle, which is passed over.
    std::string EatOperand()
    {
        const std::string name(
            EatAll("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_"));
        const bool isWhole = !Eat(".") || !EatAll("xyzwrgba").empty();
        return isWhole ? name : std::string();
    }

private:
    std::string_view _rest;
};

std::optional<Assignment> ReadAssignment(std::string_view line)
{
    LineReader reader(line);
    reader.Eat("\t");
    Assignment assignment;
    assignment.To = reader.EatOperand();
    if (assignment.To.empty() || !reader.Eat(" = "))
        return std::nullopt;
    assignment.From = reader.EatOperand();
    if (assignment.From.empty() || !reader.Eat(";") || !reader.IsAtEnd())
        return std::nullopt;
    return assignment;
}

bool IsCopy(const ShaderNode& function, const Assignment& assignment)
{
    const std::int32_t output = function.FindOutputPort(assignment.To);
    const std::int32_t input = function.FindInputPort(assignment.From);
    return output >= 0 && input >= 0 &&
           function.Outputs[static_cast<std::size_t>(output)].Type.Component ==
               function.Inputs[static_cast<std::size_t>(input)].Type.Component;
}

} // namespace

bool IsMereCopy(const ShaderNode& function)
{
    std::string_view rest = function.Code;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        const auto assignment = ReadAssignment(rest.substr(0, end));
        if (!assignment || !IsCopy(function, *assignment))
            return false;
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return true;
}

} // namespace Mox::Host
