#pragma once

#include "mox/host/HostError.h"
#include "mox/json/JsonText.h"

namespace Mox::Host {

/// What failed, in words, and what is known of the place. Of a change that
/// was refused also the step, if only one does not fit.
Json DescribeError(const HostError& error);

} // namespace Mox::Host
