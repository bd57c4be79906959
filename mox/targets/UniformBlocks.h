#pragma once

#include "mox/languages/StageProgram.h"
#include "mox/program/ProgramPlan.h"
#include "mox/targets/CompiledProgram.h"

#include <array>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// The parameters of a program, and then those that the environment declares and nothing reads.
std::vector<ProgramParameter> CompleteParameters(const ProgramPlan& plan);

/// The uniform blocks of a program, laid out once for both stages. The block of the material holds
/// what either stage reads; those of frame and object hold all that the environment declares, so
/// that they are the same for every material.
class UniformBlocks
{
public:
    /// The variables of a stage's code that are uniforms, by parameter.
    using StageUniforms = std::unordered_map<std::size_t, const Cg::Variable*>;
    using BothUniforms = std::array<StageUniforms, programStageCount>;

    /// @param parameters of CompleteParameters; must outlive the object, like the code
    /// @param names that members are to have in texts, by parameter
    /// @throws std::logic_error if a stage reads what the environment does not declare
    UniformBlocks(const ProgramPlan& plan, const std::vector<ProgramParameter>& parameters,
                  const std::vector<std::string>& names, BothUniforms uniforms);

    /// The blocks of which a stage reads a member, whole.
    /// @returns what must not outlive the object
    std::vector<Languages::UniformBlock> DeclaredIn(ProgramStage stage) const;

    /// The blocks that either stage declares.
    /// @param names of the parameters in the reflection
    std::vector<UniformBlock> Describe(const std::vector<std::string>& names) const;

    /// The variables that stand in blocks for what a stage does not read, with their parameters.
    const std::unordered_map<const Cg::Variable*, std::size_t>& Unread() const { return _unread; }

private:
    struct Block
    {
        UniformRate Rate;
        std::vector<std::size_t> Parameters; ///< of the members
        Languages::UniformBlock Layout;
    };

    std::vector<std::size_t> MembersOf(UniformRate rate, const ProgramPlan& plan) const;
    bool Reads(ProgramStage stage, std::size_t parameter) const;

    const std::vector<ProgramParameter>& _parameters;
    const BothUniforms _uniforms;
    std::vector<Block> _blocks;
    std::deque<Cg::Variable> _variables;
    std::unordered_map<const Cg::Variable*, std::size_t> _unread;
};

} // namespace Mox::Host
