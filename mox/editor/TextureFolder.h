#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Puts the file of a texture into a folder. No file that is there is replaced: if another one has
/// the name, the new one gets a name with a number, and a file with the same content stands for it.
/// @param name of the file, without a folder
/// @returns the name that it has got
/// @throws HostError if the name is not that of a texture, or if the file cannot be written
std::string AddTexture(const std::filesystem::path& folder, const std::string& name,
                       std::string_view bytes);

} // namespace Mox::Host
