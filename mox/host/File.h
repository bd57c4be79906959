#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <vector>

namespace Mox::Host {

/// All bytes of a file.
/// @throws HostError if it cannot be read or is larger than 1 GiB
std::string ReadFile(const std::filesystem::path& file);

/// The remaining bytes of a stream, such as standard input.
/// @param name of the stream in messages
/// @throws HostError as ReadFile does
std::string ReadStream(std::istream& stream, const std::string& name);

/// Makes a folder and those above it, as far as they are missing.
/// @throws HostError naming the folder
void CreateFolder(const std::filesystem::path& folder);

/// Whether two names belong to one file. Names of files that do not exist are compared as they are.
bool IsSameFile(const std::filesystem::path& a, const std::filesystem::path& b);

/// @throws HostError naming the output, if it is one of the inputs
void RequireNoInput(const std::filesystem::path& output,
                    const std::vector<std::filesystem::path>& inputs);

/// Whether a file name that is looked up in a folder cannot lead out of it: it is relative and has
/// no "..". Symbolic links in the folder are the business of its owner.
bool StaysInFolder(const std::filesystem::path& name);

} // namespace Mox::Host
