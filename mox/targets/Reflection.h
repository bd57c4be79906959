#pragma once

#include "mox/targets/CompiledProgram.h"

#include <string>

namespace Mox::Host {

/// A JSON document that tells a host which parameter stands where, in general and under which name
/// in each target. docs/targets.md explains the fields.
std::string FormatReflection(const CompiledProgram& program);

} // namespace Mox::Host
