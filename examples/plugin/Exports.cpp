#include "GuiNodeFactoryChecker.h"

#include <cstdint>
#include <mox/Export.h>
#include <mox/InterfaceVersion.h>
#include <new>

MOX_PLUGIN_EXPORT std::int32_t GetMaterialLibVersion()
{
    return Mox::Materials::InterfaceVersion;
}

MOX_PLUGIN_EXPORT Mox::Materials::GuiNodeFactory* CreateNodeFactory()
{
    return new (std::nothrow) GuiNodeFactoryChecker;
}
