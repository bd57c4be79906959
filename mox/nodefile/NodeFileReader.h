#pragma once

#include "mox/nodefile/NodeFile.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Reads and checks the file of a node type. The code is checked as far as it could leave its
/// function: comments and braces that are open. Whether it is Cg, CheckNodeFile finds.
/// @throws HostError with file and line if the file cannot be read or is wrong
NodeFile ReadNodeFile(const std::filesystem::path& file);

/// The same for a file in memory.
/// @param file as it is named in messages
NodeFile ParseNodeFile(const std::string& file, std::string_view text);

} // namespace Mox::Host
