#pragma once

#include "mox/targets/CompiledProgram.h"

#include <string>

namespace Mox::Host {

/// Formats a JSON document that describes the location of each parameter, both in general and under
/// its name in each target. docs/targets.md explains the fields.
std::string FormatReflection(const CompiledProgram& program);

} // namespace Mox::Host
