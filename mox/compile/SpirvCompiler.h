#pragma once

#include "mox/program/ProgramStage.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Host {

/// A SPIR-V module as a stream of words.
using SpirvWords = std::vector<std::uint32_t>;

/// Keeps the compiler's tables while it lives; they go with the last of these objects.
class SpirvCompiler
{
public:
    SpirvCompiler();
    ~SpirvCompiler();
    SpirvCompiler(const SpirvCompiler&) = delete;
    SpirvCompiler& operator=(const SpirvCompiler&) = delete;

    /// Compiles the text of a stage in GLSL for Vulkan 1.0. Safe in parallel.
    /// @throws std::runtime_error with the compiler's messages if it refuses the text
    SpirvWords Compile(const std::string& text, ProgramStage stage) const;
};

/// The module as fast as the optimiser knows. Takes far longer than compiling it, with the square
/// of the length. Safe in parallel.
/// @throws std::runtime_error if the optimiser fails
SpirvWords OptimiseModule(const SpirvWords& words);

} // namespace Mox::Host
