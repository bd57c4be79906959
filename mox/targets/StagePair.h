#pragma once

#include "mox/languages/StageProgram.h"
#include "mox/program/ProgramCode.h"
#include "mox/targets/CompiledProgram.h"
#include "mox/targets/UniformBlocks.h"

#include <array>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Mox::Host {

/// Both stages of a program in the form that the writers require. They declare the same
/// interpolants with the same names in the same order.
class StagePair
{
public:
    /// @param program a program without errors from CheckCode and CheckTargets; must outlive the
    ///        object
    /// @param code the code of the program, from CheckCode; must outlive the object
    /// @throws std::logic_error if the program has errors
    StagePair(const CgProgram& program, const ProgramCode& code);

    const Languages::StageProgram& StageOf(ProgramStage stage) const
    {
        return _stages[static_cast<std::size_t>(stage)];
    }

    /// The parameters of the program, followed by the remaining environment uniforms.
    const std::vector<ProgramParameter>& Parameters() const { return _parameters; }

    std::vector<UniformBlock> DescribeBlocks() const { return _blocks->Describe(_reflected); }
    StageInterface DescribeInterface(ProgramStage stage) const;

    /// Converts names listed by variable to names listed by parameter.
    std::vector<std::string>
    NamesOfParameters(const std::vector<std::pair<const Cg::Variable*, std::string>>& names) const;

private:
    UniformBlocks::BothUniforms FindParameters();
    void GiveNames();
    void Describe(ProgramStage stage);
    void DescribeSamplers(Languages::StageProgram& described) const;
    std::string NameOfInterpolant(int location) const;
    std::size_t ParameterOf(const Cg::Variable& variable) const;

    const CgProgram& _program;
    const ProgramCode& _code;
    const std::vector<ProgramParameter> _parameters;
    std::array<Languages::StageProgram, programStageCount> _stages;
    std::unordered_map<const Cg::Variable*, std::size_t> _byVariable; ///< index of the parameter
    /// Requested names, indexed by parameter.
    std::vector<std::string> _names;
    /// Names in the reflection, indexed by parameter.
    std::vector<std::string> _reflected;
    std::optional<UniformBlocks> _blocks;
    std::unordered_map<int, std::string> _interpolants; ///< names by location
};

} // namespace Mox::Host
