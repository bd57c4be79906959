#pragma once

#include <filesystem>
#include <string_view>

namespace Mox::Host {

/// The path of a hidden file that belongs to a document and is stored next to it. All symbolic
/// links to a document share one companion file, so nobody can edit it under two names at once.
/// @param document need not exist
/// @param extension without the dot
/// @throws HostError if the links form a cycle
std::filesystem::path CompanionFile(const std::filesystem::path& document,
                                    std::string_view extension);

} // namespace Mox::Host
