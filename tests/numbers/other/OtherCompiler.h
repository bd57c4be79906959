#pragma once

#include "mox/compile/SpirvCompiler.h"

#include <string>

/// Compiles a stage of Cg in another way than the product, so that values can be compared: a front
/// end for HLSL reads it, as HLSL and Cg have much in common.
/// @throws std::runtime_error with messages if the front end or the optimiser refuses it
Mox::Host::SpirvWords CompileAsHlsl(const std::string& text, Mox::Host::ProgramStage stage);
