#pragma once

#include <string_view>

namespace Mox::Host {

/// The content of standard_nodes.xml, compiled in so that a host that links the library does not
/// need an additional file.
extern const std::string_view standardNodesText;

} // namespace Mox::Host
