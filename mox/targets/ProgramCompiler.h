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

/// Spells pairs of programs in all targets, SPIR-V among them. Making the first one costs some
/// milliseconds, so keep it for many programs.
class ProgramCompiler
{
public:
    /// @param optimises whether SPIR-V goes through an optimiser
    explicit ProgramCompiler(bool optimises = false)
        : _compiler(std::make_shared<SpirvCompiler>()), _optimises(optimises)
    {}

    /// Translate with SPIR-V.
    CompiledProgram Compile(const CgProgram& program, const std::vector<CompileTarget>& targets,
                            const std::string& file, ProblemList& problems) const
    {
        return Translate(program, targets, Languages::Precision::Full, MakeSpirv(), file, problems);
    }

    /// Turns texts into SPIR-V; may outlive the object.
    SpirvMaker MakeSpirv() const;

private:
    std::shared_ptr<const SpirvCompiler> _compiler;
    bool _optimises;
};

} // namespace Mox::Host
