#pragma once

#include <string>

namespace Mox::Tool {

/// For commands that replace a document and have an option --force.
/// @throws HostError if replacing it changes more than its content: it is read-only or has other
///         hard links
void RequireReplaceable(const std::string& file);

} // namespace Mox::Tool
