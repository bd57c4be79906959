#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <vector>

namespace Mox::Host {

/// Reads the whole file.
/// @throws HostError if it cannot be read or is larger than 1 GiB
std::string ReadFile(const std::filesystem::path& file);

/// Reads the remaining bytes of a stream, such as standard input.
/// @param name the name of the stream for messages
/// @throws HostError as ReadFile does
std::string ReadStream(std::istream& stream, const std::string& name);

/// Creates a folder and any missing parent folders.
/// @throws HostError naming the folder
void CreateFolder(const std::filesystem::path& folder);

/// Returns whether two names refer to the same file. Names of files that do not exist are compared
/// as strings.
bool IsSameFile(const std::filesystem::path& a, const std::filesystem::path& b);

/// @throws HostError naming the output, if it is one of the inputs
void RequireNoInput(const std::filesystem::path& output,
                    const std::vector<std::filesystem::path>& inputs);

/// Returns whether a file name, resolved relative to a folder, stays inside the folder: the name
/// must be relative and must not contain "..". Symbolic links in the folder are the responsibility
/// of its owner.
bool StaysInFolder(const std::filesystem::path& name);

} // namespace Mox::Host
