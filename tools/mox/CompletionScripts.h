#pragma once

#include "ProgramHelp.h"

namespace Mox::Tool {

/// Scripts that complete a program's command line. What a value's placeholder begins with tells
/// what it is completed from: FILE and DIR mean files and folders, others nothing, if there are no
/// choices.
std::string FormatBashCompletion(const ProgramHelp& help);
std::string FormatFishCompletion(const ProgramHelp& help);
std::string FormatZshCompletion(const ProgramHelp& help);

} // namespace Mox::Tool
