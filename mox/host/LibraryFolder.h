#pragma once

#include <filesystem>

namespace Mox::Host {

/// The folder of the library mox_materials that the program has loaded. Plug-ins and environment
/// lie in fixed places relative to it, in a build tree as in an installed one, so that they belong
/// to that very library, whatever program loads it.
std::filesystem::path LibraryFolder();

} // namespace Mox::Host
