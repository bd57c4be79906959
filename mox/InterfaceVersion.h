#pragma once

#include <cstdint>

namespace Mox::Materials {

/// Version of the classes that hosts and plug-ins share. A plug-in reports the number that it was
/// compiled with, and a host loads none with another one. It rises with every change of a shared
/// class: a virtual operation, a field, their order.
inline constexpr std::int32_t InterfaceVersion = 5;

} // namespace Mox::Materials
