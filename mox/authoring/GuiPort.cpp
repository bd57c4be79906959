#include "mox/authoring/GuiPort.h"

#include "mox/ShaderError.h"

namespace Mox::Materials {

GuiPort::GuiPort(const std::string& name, const std::string& label)
    : Name(name), Label(label.empty() ? name : label)
{}

GuiPort::GuiPort(const GuiPort& other) = default;

GuiPort::GuiPort(GuiPort&& other) noexcept = default;

GuiPort& GuiPort::operator=(const GuiPort& other) = default;

GuiPort& GuiPort::operator=(GuiPort&& other) noexcept = default;

GuiPort::~GuiPort() = default;

void GuiPort::SetComponentCount(std::int32_t count)
{
    ComponentCount = count;
    CountFixed = true;
    CountKnown = true;
}

std::int32_t GuiPort::GetComponentCount() const
{
    if (!CountKnown)
        throw ShaderError("cannot read unknown component count");
    return ComponentCount;
}

void GuiPort::SetPrecision(ComponentType precision)
{
    Precision = precision;
    PrecisionFixed = true;
    PrecisionKnown = true;
}

ComponentType GuiPort::GetPrecision() const
{
    if (!PrecisionKnown)
        throw ShaderError("cannot read unknown precision");
    return Precision;
}

ShaderType GuiPort::GetShaderType() const
{
    const std::int32_t columns = GetComponentCount();
    return {GetPrecision(), columns, 1, 1};
}

} // namespace Mox::Materials
