#include "mox/shader/ShaderType.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <iterator>
#include <ostream>

using Mox::Materials::AppendPart;
using Mox::Materials::Compose;

namespace {

constexpr const char* componentNames[] = {
    "unknown", "void",      "float",     "half",      "fixed",       "int",
    "bool",    "sampler1D", "sampler2D", "sampler3D", "samplerCUBE", "samplerRECT",
};

void AppendElement(std::string& text, const ShaderType& type)
{
    AppendPart(text, GetComponentName(type.Component));
    if (type.Rows > 1) {
        AppendPart(text, type.Rows);
        AppendPart(text, "x");
        AppendPart(text, type.Columns);
    } else if (type.Columns > 1) {
        AppendPart(text, type.Columns);
    }
}

void AppendBrackets(std::string& text, const ShaderType& type)
{
    if (type.ArrayLength > 1)
        text += Compose("[", type.ArrayLength, "]");
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
    std::string text;
    AppendElement(text, *this);
    AppendBrackets(text, *this);
    return text;
}

std::string ShaderType::FormatDeclaration(const std::string& name) const
{
    std::string text;
    AppendElement(text, *this);
    text += ' ';
    text += name;
    AppendBrackets(text, *this);
    return text;
}

std::ostream& operator<<(std::ostream& stream, const ShaderType& type)
{
    return stream << type.Format();
}
