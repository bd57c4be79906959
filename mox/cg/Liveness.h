#pragma once

#include "mox/cg/Module.h"

#include <functional>

namespace Mox::Cg {

/// Removes from a lowered module everything that does not affect those outputs of "main" that are
/// read: other outputs, statements, inputs, uniforms, and functions. Arguments that no live output
/// depends on become zero, except for samplers. Discarding a fragment counts as an output.
/// @param isRead whether an output of "main" is read
void DropDead(Module& module, const std::function<bool(const Variable&)>& isRead);

} // namespace Mox::Cg
