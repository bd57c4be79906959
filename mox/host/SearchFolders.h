#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// Returns the folder of the library mox_materials that the program has loaded. Plug-ins and the
/// environment are in fixed locations relative to it, both in a build tree and in an installation,
/// so that they match this library in any program that loads it.
std::filesystem::path LibraryFolder();

/// Returns the folders that an environment variable lists, separated by colons; empty if the
/// variable is not set.
std::vector<std::string> ReadSearchPath(const char* variable);

} // namespace Mox::Host
