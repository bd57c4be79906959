#pragma once

#include "mox/Export.h"

#include <string>
#include <vector>

namespace Mox::Materials {

/// The pieces between delimiters in order, without the empty ones.
MOX_API std::vector<std::string> SplitString(const std::string& text, char delimiter);

/// Reads numbers with commas between them, whatever the locale. What follows a number in its piece
/// is ignored.
/// @returns false if a piece begins with no number; values is empty then
MOX_API bool ParseFloatList(const std::string& text, std::vector<float>& values);

} // namespace Mox::Materials
