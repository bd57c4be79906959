#pragma once

#include <filesystem>
#include <string>

namespace Mox::Host {

/// All bytes of a file.
/// @throws HostError if it cannot be read or is larger than 1 GiB
std::string ReadFile(const std::filesystem::path& file);

} // namespace Mox::Host
