#pragma once

#include "mox/shader/ShaderNode.h"

namespace Mox::Host {

/// Whether a function is proved to do nothing but assign components of inputs to components of
/// outputs of the same component type. Interpolating the result is then the same as copying the
/// interpolated inputs.
bool IsMereCopy(const ShaderNode& function);

} // namespace Mox::Host
