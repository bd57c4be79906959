#pragma once

#include "mox/host/Problem.h"
#include "mox/languages/Precision.h"
#include "mox/program/CgProgram.h"
#include "mox/targets/CompiledProgram.h"

#include <functional>
#include <string>
#include <vector>

namespace Mox::Host {

/// Compiles the Vulkan GLSL source of a stage to the words of a SPIR-V module.
/// @throws std::runtime_error if the source is invalid
using SpirvMaker = std::function<std::string(const std::string& text, ProgramStage stage)>;

/// Translates both stages of a program to each target. The result for the same program is always
/// identical, byte for byte. Thread-safe.
/// @param makeSpirv required only for SPIR-V
/// @param file the file of the material, for messages
/// @param problems receives an error under the rule "code" or "target" with the node for each error
///        in the program, or one under the rule "compile" if writing fails
/// @returns an incomplete result if errors were added
CompiledProgram Translate(const CgProgram& program, const std::vector<CompileTarget>& targets,
                          Languages::Precision precision, const SpirvMaker& makeSpirv,
                          const std::string& file, ProblemList& problems);

} // namespace Mox::Host
