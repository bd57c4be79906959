#pragma once

#include "mox/cg/Module.h"
#include "mox/program/CgProgram.h"

#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace Mox::Host {

/// The syntax trees of both stages of a program. Functions are parsed immediately; the entry
/// points, which only call them, are parsed when a language other than Cg needs them.
class ProgramCode
{
public:
    /// Parses the functions.
    ProgramCode(const StageProgram& vertex, const StageProgram& fragment);

    const std::vector<Cg::SourceError>& ErrorsOf(ProgramStage stage) const
    {
        return _errors[static_cast<std::size_t>(stage)];
    }

    /// Returns a whole stage, lowered and without code that does not affect the outputs of the
    /// fragment stage. The first call does the work. Thread-safe.
    /// @throws std::logic_error if the code has errors
    const Cg::Module& StageOf(ProgramStage stage) const;

private:
    void Complete() const;
    void DropDead() const;

    std::array<std::vector<Cg::SourceError>, programStageCount> _errors; ///< in the functions
    mutable std::array<std::unique_ptr<Cg::ModuleReader>, programStageCount> _readers;
    mutable std::array<std::unique_ptr<Cg::Module>, programStageCount> _modules;
    mutable std::once_flag _isComplete;
    mutable std::string _failure; ///< message of an error in Complete
};

/// The register number of a variable, such as 3 for "TEXCOORD3".
/// @param semantic such as "TEXCOORD"
/// @throws std::logic_error if the variable is in a different kind of register
int LocationOf(const Cg::Variable& variable, std::string_view semantic);

/// Whether a variable is the vertex position.
bool IsPosition(const Cg::Variable& variable);

} // namespace Mox::Host
