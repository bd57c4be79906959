#pragma once

#include "mox/program/ProgramStage.h"
#include "mox/targets/ProgramTranslator.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Host {

/// A SPIR-V module as a stream of words.
using SpirvWords = std::vector<std::uint32_t>;

/// Keeps the compiler's tables in memory; they are released with the last of these objects.
class SpirvCompiler
{
public:
    SpirvCompiler();
    ~SpirvCompiler();
    SpirvCompiler(const SpirvCompiler&) = delete;
    SpirvCompiler& operator=(const SpirvCompiler&) = delete;

    /// Compiles the GLSL source of a stage for Vulkan 1.0. Thread-safe.
    /// @throws std::runtime_error with the compiler's messages if it rejects the source
    SpirvWords Compile(const std::string& text, ProgramStage stage) const;
};

/// Optimises the module for performance. This takes much longer than compiling it, and the time is
/// quadratic in the length. Thread-safe.
/// @throws std::runtime_error if the optimiser fails
SpirvWords OptimiseModule(const SpirvWords& words);

/// Translates pairs of programs to all targets, including SPIR-V. Creating the first object takes a
/// few milliseconds, so reuse it for many programs.
class ProgramCompiler
{
public:
    /// @param optimises whether to run an optimiser on SPIR-V
    explicit ProgramCompiler(bool optimises = false)
        : _compiler(std::make_shared<SpirvCompiler>()), _optimises(optimises)
    {}

    /// Calls Translate with SPIR-V support.
    CompiledProgram Compile(const CgProgram& program, const std::vector<CompileTarget>& targets,
                            const std::string& file, ProblemList& problems) const
    {
        return Translate(program, targets, Languages::Precision::Full, MakeSpirv(), file, problems);
    }

    /// Returns a function that compiles sources to SPIR-V; it may outlive the object.
    SpirvMaker MakeSpirv() const;

private:
    std::shared_ptr<const SpirvCompiler> _compiler;
    bool _optimises;
};

} // namespace Mox::Host
