#include "mox/Export.h"
#include "mox/InterfaceVersion.h"
#include "plugins/core/GuiNodeFactoryCore.h"

#include <cstdint>
#include <new>

/// Returns the version of the plug-in interface, which the host compares with its own.
MOX_PLUGIN_EXPORT std::int32_t GetMaterialLibVersion()
{
    return Mox::Materials::InterfaceVersion;
}

/// Returns a new factory, which the caller owns and deletes through its virtual destructor; null if
/// there is not enough memory.
MOX_PLUGIN_EXPORT Mox::Materials::GuiNodeFactory* CreateNodeFactory()
{
    return new (std::nothrow) GuiNodeFactoryCore;
}
