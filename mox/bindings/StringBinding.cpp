#include "mox/bindings/StringBinding.h"

namespace Mox::Materials {

StringBinding::StringBinding(StreamType newStreamType, const std::string& name,
                             std::uint32_t newCount)
    : Binding(newStreamType, name, newCount)
{}

StringBinding::~StringBinding() = default;

void StringBinding::SetDefault(std::uint32_t, const std::string& newValue)
{
    value = newValue;
    hasDefault = true;
}

std::string StringBinding::GetDefaultString(std::uint32_t) const
{
    return value;
}

void StringBinding::SetDefaultText(const std::string& text)
{
    value = text;
    hasDefault = true;
}

std::string StringBinding::GetDefaultText() const
{
    return hasDefault ? value : std::string();
}

} // namespace Mox::Materials
