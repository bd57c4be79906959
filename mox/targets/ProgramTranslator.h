#pragma once

#include "mox/host/Problem.h"
#include "mox/languages/Precision.h"
#include "mox/program/CgProgram.h"
#include "mox/targets/CompiledProgram.h"

#include <functional>
#include <string>
#include <vector>

namespace Mox::Host {

/// Turns the text of a stage in GLSL for Vulkan into the words of a SPIR-V module.
/// @throws std::runtime_error if there is something wrong with the text
using SpirvMaker = std::function<std::string(const std::string& text, ProgramStage stage)>;

/// Spells both stages of a program in each of the targets. The result is the same to the byte for
/// the same program. Safe in parallel.
/// @param makeSpirv needed for SPIR-V alone
/// @param file of the material, for messages
/// @param problems gets an error of the rule "code" or "target" with its node for everything that
///        is wrong with the program, or one of the rule "compile" if writing fails
/// @returns incomplete if errors were added
CompiledProgram Translate(const CgProgram& program, const std::vector<CompileTarget>& targets,
                          Languages::Precision precision, const SpirvMaker& makeSpirv,
                          const std::string& file, ProblemList& problems);

} // namespace Mox::Host
