#include "mox/host/SearchFolders.h"

#include "mox/shader/ShaderType.h"

#include <boost/dll/runtime_symbol_info.hpp>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace Mox::Host {

std::filesystem::path LibraryFolder()
{
    // This is a constant inside the library. The address of a function could instead be that of a
    // jump table entry in the program.
    const void* inside = GetComponentName(ComponentType::Void);
    return std::filesystem::canonical(boost::dll::symbol_location_ptr(inside)).parent_path();
}

std::vector<std::string> ReadSearchPath(const char* variable)
{
    std::vector<std::string> folders;
    const char* value = std::getenv(variable);
    for (std::string_view rest = value ? value : ""; !rest.empty();) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (end > 0)
            folders.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

} // namespace Mox::Host
