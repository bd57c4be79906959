#pragma once

#include "mox/nodefile/NodeFile.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Reads and checks the file of a node type. Code is only checked for open comments, brackets and
/// braces, which could affect the code around it; CheckNodeFile checks whether it is valid Cg.
/// @throws HostError with file and line if the file is unreadable or invalid
NodeFile ReadNodeFile(const std::filesystem::path& file);

/// Reads a file from memory.
/// @param file name for messages
NodeFile ParseNodeFile(const std::string& file, std::string_view text);

} // namespace Mox::Host
