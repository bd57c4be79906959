#pragma once

#include "mox/host/HostError.h"
#include "mox/json/JsonText.h"

namespace Mox::Host {

/// Describes the message and the known parts of the location; for a refused change also the number
/// of the step, if only one step is at fault.
Json DescribeError(const HostError& error);

} // namespace Mox::Host
