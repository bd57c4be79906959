#pragma once

#include "mox/cg/Module.h"
#include "mox/program/CgProgram.h"

#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace Mox::Host {

/// Both stages of a program as trees. Functions are read at once; the entry points, which only call
/// them, when a language other than Cg needs them.
class ProgramCode
{
public:
    /// Reads the functions.
    ProgramCode(const StageProgram& vertex, const StageProgram& fragment);

    const std::vector<Cg::SourceError>& ErrorsOf(ProgramStage stage) const
    {
        return _errors[static_cast<std::size_t>(stage)];
    }

    /// A whole stage, lowered and without what has no effect on the outputs of the fragment stage.
    /// The first call does the work. Safe in parallel.
    /// @throws std::logic_error if there is something wrong with the code
    const Cg::Module& StageOf(ProgramStage stage) const;

private:
    void Complete() const;
    void DropDead() const;

    std::array<std::vector<Cg::SourceError>, programStageCount> _errors; ///< of the functions
    mutable std::array<std::unique_ptr<Cg::ModuleReader>, programStageCount> _readers;
    mutable std::array<std::unique_ptr<Cg::Module>, programStageCount> _modules;
    mutable std::once_flag _isComplete;
    mutable std::string _failure; ///< of Complete
};

/// The number of a register, such as 3 of "TEXCOORD3".
/// @param semantic such as "TEXCOORD"
/// @throws std::logic_error if the variable is in a register of another kind
int LocationOf(const Cg::Variable& variable, std::string_view semantic);

/// Whether a variable is the position of a vertex.
bool IsPosition(const Cg::Variable& variable);

} // namespace Mox::Host
