#pragma once

#include <filesystem>
#include <string_view>

namespace Mox::Host {

/// The hidden file that belongs to a document and lies beside it. All names that lead to one
/// document by symbolic links have the same one, so that nobody edits it under two of them.
/// @param document need not exist
/// @param extension without the dot
/// @throws HostError if the links form a cycle
std::filesystem::path CompanionFile(const std::filesystem::path& document,
                                    std::string_view extension);

} // namespace Mox::Host
