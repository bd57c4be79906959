#include "mox/authoring/GuiNodeFactory.h"

namespace Mox::Materials {

GuiNodeDescription::GuiNodeDescription() = default;

GuiNodeDescription::GuiNodeDescription(const std::string& typeName)
    : TypeName(typeName), Label(typeName)
{}

GuiNodeDescription::GuiNodeDescription(const GuiNodeDescription& other) = default;

GuiNodeDescription::GuiNodeDescription(GuiNodeDescription&& other) noexcept = default;

GuiNodeDescription& GuiNodeDescription::operator=(const GuiNodeDescription& other) = default;

GuiNodeDescription& GuiNodeDescription::operator=(GuiNodeDescription&& other) noexcept = default;

GuiNodeDescription::~GuiNodeDescription() = default;

GuiNodeFactory::GuiNodeFactory() = default;

GuiNodeFactory::~GuiNodeFactory() = default;

} // namespace Mox::Materials
