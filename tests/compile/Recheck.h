#pragma once

#include "mox/compile/ProgramCompiler.h"

#include <string>

/// What an independent reading of a result has to complain about: GLSL, ESSL and HLSL go through
/// glslang, SPIR-V through the validator. MSL has no reader here; its text is searched for what no
/// text may hold. Empty if all is well.
std::string Recheck(const Mox::Host::TargetProgram& program);
