#pragma once

#include <string>
#include <vector>

namespace Mox::Host {

/// The folders that an environment variable lists with colons between them; none if it is not set.
std::vector<std::string> ReadSearchPath(const char* variable);

} // namespace Mox::Host
