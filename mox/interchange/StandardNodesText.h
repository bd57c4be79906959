#pragma once

#include <string_view>

namespace Mox::Host {

/// The content of standard_nodes.xml. It is compiled in, so that a host that links the library
/// needs no file beside it.
extern const std::string_view standardNodesText;

} // namespace Mox::Host
