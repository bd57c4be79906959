#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// The folder of the library mox_materials that the program has loaded. Plug-ins and environment
/// lie in fixed places relative to it, in a build tree as in an installed one, so that they belong
/// to that very library, whatever program loads it.
std::filesystem::path LibraryFolder();

/// The folders that an environment variable lists with colons between them; none if it is not set.
std::vector<std::string> ReadSearchPath(const char* variable);

} // namespace Mox::Host
