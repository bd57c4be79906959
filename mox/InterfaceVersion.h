#pragma once

#include <cstdint>

namespace Mox::Materials {

/// Version of the classes that hosts and plug-ins share. A plug-in reports the version that it was
/// compiled with, and a host does not load plug-ins with a different version. It increases with
/// each change to a shared class: its virtual operations, its fields or their order.
inline constexpr std::int32_t InterfaceVersion = 5;

} // namespace Mox::Materials
