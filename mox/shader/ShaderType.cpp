#include "mox/shader/ShaderType.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <iterator>
#include <ostream>

using Mox::Materials::Compose;

namespace {

constexpr const char* componentNames[] = {
    "unknown", "void",      "float",     "half",      "fixed",       "int",
    "bool",    "sampler1D", "sampler2D", "sampler3D", "samplerCUBE", "samplerRECT",
};

std::string FormatElement(const ShaderType& type)
{
    const char* component = GetComponentName(type.Component);
    if (type.Rows > 1)
        return Compose(component, type.Rows, "x", type.Columns);
    if (type.Columns > 1)
        return Compose(component, type.Columns);
    return component;
}

std::string FormatBrackets(const ShaderType& type)
{
    return type.ArrayLength > 1 ? Compose("[", type.ArrayLength, "]") : std::string();
}

} // namespace

const char* GetComponentName(ComponentType component)
{
    const auto index = static_cast<std::uint32_t>(component);
    if (index >= std::size(componentNames))
        throw ShaderError("unknown component type");
    return componentNames[index];
}

ShaderType::ShaderType(ComponentType component, std::int32_t columns, std::int32_t rows,
                       std::int32_t arrayLength)
    : Component(component), Columns(columns), Rows(rows), ArrayLength(arrayLength)
{}

std::string ShaderType::Format() const
{
    return FormatElement(*this) + FormatBrackets(*this);
}

std::string ShaderType::FormatDeclaration(const std::string& name) const
{
    return Compose(FormatElement(*this), " ", name, FormatBrackets(*this));
}

std::ostream& operator<<(std::ostream& stream, const ShaderType& type)
{
    return stream << type.Format();
}
