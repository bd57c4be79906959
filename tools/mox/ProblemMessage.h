#pragma once

#include "mox/host/Problem.h"

#include <string>

namespace Mox::Tool {

/// A problem as the program tells it, in one line without its end.
std::string FormatMessage(const Host::Problem& problem);

} // namespace Mox::Tool
