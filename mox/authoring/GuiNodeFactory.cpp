#include "mox/authoring/GuiNodeFactory.h"

namespace Mox::Materials {

GuiNodeFactory::GuiNodeFactory() = default;

GuiNodeFactory::~GuiNodeFactory() = default;

} // namespace Mox::Materials
