#include "mox/shader/ShaderFunction.h"

#include "mox/ShaderError.h"

ShaderFunction::ShaderFunction() = default;

ShaderFunction::ShaderFunction(const ShaderFunction& other) = default;

ShaderFunction& ShaderFunction::operator=(const ShaderFunction& other) = default;

ShaderFunction::~ShaderFunction() = default;

void ShaderFunction::SetLevel(ShaderLevel level)
{
    Level = level;
}

void ShaderFunction::SetName(const std::string& name)
{
    Name = name;
}

void ShaderFunction::SetCode(const std::string& code)
{
    Code = code;
}

std::int32_t ShaderFunction::GetParameterCount() const
{
    return static_cast<std::int32_t>(Parameters.size());
}

const ShaderParameter& ShaderFunction::GetParameter(int index) const
{
    if (index < 0 || index >= GetParameterCount())
        throw ShaderError("index out of range");
    return Parameters[static_cast<std::size_t>(index)];
}
