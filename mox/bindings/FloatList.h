#pragma once

#include "mox/Export.h"

#include <string>
#include <vector>

namespace Mox::Materials {

/// Splits a string at a delimiter, omitting empty parts.
MOX_API std::vector<std::string> SplitString(const std::string& text, char delimiter);

/// Parses comma-separated numbers independently of the locale. Anything after the number in a part
/// is ignored.
/// @returns false if a part does not start with a number; values is then empty
MOX_API bool ParseFloatList(const std::string& text, std::vector<float>& values);

} // namespace Mox::Materials
