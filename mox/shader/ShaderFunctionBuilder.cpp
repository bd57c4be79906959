#include "mox/shader/ShaderFunctionBuilder.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <algorithm>
#include <cstdint>
#include <locale>
#include <utility>

using Mox::Materials::Compose;
using Mox::Materials::GuiPort;

namespace {

const char* LiteralOpening(const ShaderType& type)
{
    switch (type.Component) {
    case ComponentType::Float:
        return "float( ";
    case ComponentType::Half:
        return "half( ";
    default:
        throw ShaderError(Compose("cannot determine zero type for ", type.Format()));
    }
}

void AddParameter(ShaderFunction& function, std::int32_t direction, const ShaderType& type,
                  const std::string& name)
{
    for (const ShaderParameter& present : function.Parameters) {
        if (present.Name == name) {
            throw Compose("parameter name \"", name, "\" is duplicated in function \"",
                          function.Name, "\"");
        }
    }
    ShaderParameter parameter;
    parameter.Direction = direction;
    parameter.Type = type;
    parameter.Name = name;
    function.Parameters.push_back(std::move(parameter));
}

} // namespace

ShaderFunctionBuilder::ShaderFunctionBuilder()
{
    Body.imbue(std::locale::classic());
    // Otherwise, running out of memory would silently truncate the code.
    Body.exceptions(std::ios::badbit);
}

ShaderFunctionBuilder::~ShaderFunctionBuilder() = default;

void ShaderFunctionBuilder::AddInput(const ShaderType& type, const std::string& name)
{
    AddParameter(*this, ShaderDirection::Input, type, name);
}

void ShaderFunctionBuilder::AddOutput(const ShaderType& type, const std::string& name)
{
    AddParameter(*this, ShaderDirection::Output, type, name);
}

void ShaderFunctionBuilder::AddInputPort(const GuiPort& port)
{
    AddInput(port.GetShaderType(), port.Name);
}

void ShaderFunctionBuilder::AddOutputPort(const GuiPort& port)
{
    AddOutput(port.GetShaderType(), port.Name);
}

void ShaderFunctionBuilder::AppendCode(const std::string& text)
{
    Body << text;
}

void ShaderFunctionBuilder::DeclareConstant(const ShaderType& type, const std::string& name,
                                            float value)
{
    Body << '\t';
    Body << Compose(type.FormatDeclaration(name), " = ");
    Body << Compose(LiteralOpening(type), value, " ).");
    Body << std::string(static_cast<std::size_t>(std::max(type.Columns, 0)), 'x') << ";\n";
}

void ShaderFunctionBuilder::DeclareConstantForPort(const GuiPort& port, float value)
{
    DeclareConstant(port.GetShaderType(), port.Name, value);
}

ShaderNodeHandle ShaderFunctionBuilder::Build(ShaderLevel level, const std::string& name) const
{
    ShaderFunction function(*this);
    function.SetName(name);
    function.SetLevel(level);
    function.SetCode(Body.str());
    return ShaderNode::CreateFunctionNode(function);
}
