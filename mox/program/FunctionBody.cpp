#include "mox/program/FunctionBody.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"
#include "mox/cg/ConstantValue.h"
#include "mox/program/CgWriter.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// A port, or some of its components.
struct Operand
{
    std::size_t Port;
    std::vector<std::size_t> Components;
};

/// @returns nothing if the expression is neither a port nor a swizzle of one
std::optional<Operand> ReadOperand(const Cg::Expression& expression,
                                   const std::vector<ShaderPort>& ports)
{
    const bool isSwizzle = expression.Kind == Cg::ExpressionKind::Swizzle;
    const Cg::Expression& value = isSwizzle ? *expression.Operands[0] : expression;
    if (value.Kind != Cg::ExpressionKind::Name)
        return std::nullopt;
    const auto port = std::ranges::find(ports, value.Refers->Name, &ShaderPort::Name);
    if (port == ports.end())
        return std::nullopt;
    Operand operand{static_cast<std::size_t>(port - ports.begin()), {}};
    if (isSwizzle) {
        for (const char letter : expression.Text)
            operand.Components.push_back(std::string_view("xyzw").find(letter));
    } else {
        for (std::size_t i = 0; i < ComponentCount(port->Type); ++i)
            operand.Components.push_back(i);
    }
    return operand;
}

/// For each component of each output, the input component that it copies, where known.
using Copies = std::vector<std::vector<std::optional<InputComponent>>>;

/// Records the components that a statement copies.
/// @returns false if the statement does anything else
bool ReadCopy(const Cg::Statement& statement, const ShaderNode& function, Copies& copies)
{
    if (statement.Kind != Cg::StatementKind::Evaluate ||
        statement.Value->Kind != Cg::ExpressionKind::Assign)
        return false;
    const auto target = ReadOperand(*statement.Value->Operands[0], function.Outputs);
    const auto source = ReadOperand(*statement.Value->Operands[1], function.Inputs);
    if (!target || !source || target->Components.size() != source->Components.size())
        return false;
    for (std::size_t i = 0; i < target->Components.size(); ++i)
        copies[target->Port][target->Components[i]] = {source->Port, source->Components[i]};
    return true;
}

/// Returns the first lines of a string, or nothing if count is not positive.
std::string_view TakeLines(std::string_view text, std::int64_t count)
{
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count)
        end = std::min(text.find('\n', end), text.size() - 1) + 1;
    return text.substr(0, end);
}

} // namespace

std::size_t ComponentCount(const ShaderType& type)
{
    const auto count = [](std::int32_t number) {
        return static_cast<std::size_t>(std::max(number, 1));
    };
    return count(type.Columns) * count(type.Rows) * count(type.ArrayLength);
}

FunctionBody::FunctionBody(const ShaderNode& function, const std::string& code)
    : _function(function)
{
    std::string head;
    try {
        head = Compose(code, "\n", FormatSignature("body", function.Inputs, function.Outputs),
                       "\n{\n");
    } catch (const ShaderError&) {
        return; // a port has a type that Cg cannot declare
    }
    _module = Cg::ReadModule(Compose(head, function.Code, "\n}\n"));
    _isWhole = _module->Errors.empty();
    if (!_isWhole) {
        const std::int64_t line = _module->Errors.front().Where.Line;
        const std::int64_t lineCount = line - 1 - std::count(head.begin(), head.end(), '\n');
        _module = Cg::ReadModule(Compose(head, TakeLines(function.Code, lineCount), "}\n"));
    }
    if (_module->Errors.empty() && !_module->Functions.empty())
        _statements = _module->Functions.back()->Body;
}

std::optional<CopiedComponents> FunctionBody::FindCopies() const
{
    if (!_isWhole)
        return std::nullopt;
    Copies copies;
    for (const ShaderPort& output : _function.Outputs)
        copies.emplace_back(ComponentCount(output.Type));
    for (const Cg::Statement* statement : _statements) {
        if (!ReadCopy(*statement, _function, copies))
            return std::nullopt;
    }
    CopiedComponents result;
    for (const auto& output : copies) {
        auto& components = result.emplace_back();
        for (const auto& component : output) {
            if (!component)
                return std::nullopt; // this component is never assigned
            components.push_back(*component);
        }
    }
    return result;
}

bool FunctionBody::DeclaresZero(const std::string& name) const
{
    return std::any_of(_statements.begin(), _statements.end(), [&](const auto* statement) {
        return statement->Kind == Cg::StatementKind::Declare && statement->Refers->Name == name &&
               statement->Value && Cg::Evaluate(*statement->Value) == 0.0;
    });
}

} // namespace Mox::Host
