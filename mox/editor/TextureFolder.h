#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Writes a texture file into a folder without ever replacing an existing file: a file with the
/// same content is reused; if a file of that name has different content, a number is added to the
/// new name.
/// @param name of the file, without a folder
/// @returns the name of the file in the folder
/// @throws HostError if the name is not that of a texture, if there are no bytes, or if the file
///         cannot be written
std::string AddTexture(const std::filesystem::path& folder, const std::string& name,
                       std::string_view bytes);

} // namespace Mox::Host
