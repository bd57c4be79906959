#include "mox/host/LibraryFolder.h"

#include "mox/shader/ShaderType.h"

#include <boost/dll/runtime_symbol_info.hpp>

namespace Mox::Host {

std::filesystem::path LibraryFolder()
{
    // A constant inside the library. The address of a function may be that of a jump table in the
    // program instead.
    const void* inside = GetComponentName(ComponentType::Void);
    return std::filesystem::canonical(boost::dll::symbol_location_ptr(inside)).parent_path();
}

} // namespace Mox::Host
