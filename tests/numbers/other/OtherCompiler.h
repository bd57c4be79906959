#pragma once

#include "mox/targets/ProgramCompiler.h"

#include <string>

/// Compiles a fragment program in Cg independently of the product, so that results can be compared.
/// It uses an HLSL front end, since HLSL and Cg have much in common. Inputs are numbered in order.
/// @throws std::runtime_error with messages if the front end or the optimiser refuses the program
Mox::Host::SpirvWords CompileAsHlsl(const std::string& text);
