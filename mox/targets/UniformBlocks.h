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

/// Returns the parameters of a program, followed by the environment uniforms that are not read.
std::vector<ProgramParameter> CompleteParameters(const ProgramPlan& plan);

/// The uniform blocks of a program, with one layout for both stages. The block of the material
/// contains the uniforms that either stage reads; those of the frame and the object contain all
/// environment uniforms, so that they are the same for all materials.
class UniformBlocks
{
public:
    /// The uniform variables in the code of a stage, by parameter.
    using StageUniforms = std::unordered_map<std::size_t, const Cg::Variable*>;
    using BothUniforms = std::array<StageUniforms, programStageCount>;

    /// @param parameters result of CompleteParameters; must outlive the object, like the code
    /// @param names requested names of members in the sources, by parameter
    /// @throws std::logic_error if a stage reads a uniform that the environment does not declare
    UniformBlocks(const ProgramPlan& plan, const std::vector<ProgramParameter>& parameters,
                  const std::vector<std::string>& names, BothUniforms uniforms);

    /// Returns the complete blocks of which a stage reads a member.
    /// @returns blocks that must not outlive the object
    std::vector<Languages::UniformBlock> DeclaredIn(ProgramStage stage) const;

    /// Describes the blocks that either stage declares.
    /// @param names the names of the parameters in the reflection
    std::vector<UniformBlock> Describe(const std::vector<std::string>& names) const;

    /// The variables that represent unread members in blocks, with their parameters.
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
