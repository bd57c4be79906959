#pragma once

#include "mox/cg/Module.h"

#include <functional>

namespace Mox::Cg {

/// Removes from a lowered module what has no effect on the outputs of "main" that are read: its
/// other outputs, statements, inputs, uniforms, and functions. An argument on which no output that
/// is read depends becomes zero, unless it is a sampler. A fragment that is discarded counts as an
/// output.
/// @param isRead of the outputs of "main"
void DropDead(Module& module, const std::function<bool(const Variable&)>& isRead);

} // namespace Mox::Cg
