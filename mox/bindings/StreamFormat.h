#pragma once

#include "mox/Export.h"

#include <string>

namespace Mox::Materials {

/// The storage format that a type word names, such as "s16n" for "short" with the normalise flag.
/// Any other word, a storage format among them, is given back unchanged.
MOX_API std::string ToStreamFormat(const std::string& word, bool isNormalised);

} // namespace Mox::Materials
