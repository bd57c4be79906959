#pragma once

#include "ProgramHelp.h"

namespace Mox::Tool {

/// The manual page of a program, in the man macros of roff.
std::string FormatManualPage(const ProgramHelp& help, const std::string& version);

} // namespace Mox::Tool
