#pragma once

#include "mox/targets/ProgramCompiler.h"

#include <string>

/// Validates a result with an independent reader: glslang for GLSL, ESSL and HLSL, the SPIR-V
/// validator for SPIR-V. No reader for MSL is available here; its source is only searched for
/// invalid constructs.
/// @returns the reader's messages; empty if the program is valid
std::string Recheck(const Mox::Host::TargetProgram& program);
