#pragma once

#include "mox/host/HostError.h"
#include "mox/json/JsonText.h"

namespace Mox::Host {

/// The message and what is known of the place; for a refused change also the number of the step, if
/// a single one does not fit.
Json DescribeError(const HostError& error);

} // namespace Mox::Host
