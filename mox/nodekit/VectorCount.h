#pragma once

#include "mox/Export.h"
#include "mox/authoring/GuiProperty.h"

#include <cstdint>

namespace Mox::Materials {

/// The number of components that a property chooses for a vector.
/// @throws ShaderError if it is not between 2 and 4
MOX_API std::int32_t GetVectorCount(const GuiProperty& property);

} // namespace Mox::Materials
