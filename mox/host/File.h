#pragma once

#include <filesystem>
#include <string>

namespace Mox::Host {

/// All bytes of a file.
/// @throws HostError if it cannot be read or is larger than 1 GiB
std::string ReadFile(const std::filesystem::path& file);

/// Makes a folder and those above it, as far as they are missing.
/// @throws HostError naming the folder
void CreateFolder(const std::filesystem::path& folder);

} // namespace Mox::Host
