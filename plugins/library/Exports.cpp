#include "mox/Export.h"
#include "mox/InterfaceVersion.h"
#include "plugins/library/GuiNodeFactoryLibrary.h"

#include <cstdint>
#include <new>

/// Version of the interface between host and plug-ins, for the host to compare.
MOX_PLUGIN_EXPORT std::int32_t GetMaterialLibVersion()
{
    return Mox::Materials::InterfaceVersion;
}

/// A new factory that the caller owns and deletes through its virtual destructor, or null if there
/// is no memory for the object itself.
MOX_PLUGIN_EXPORT Mox::Materials::GuiNodeFactory* CreateNodeFactory()
{
    return new (std::nothrow) GuiNodeFactoryLibrary;
}
