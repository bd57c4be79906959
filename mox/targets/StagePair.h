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

/// Both stages of a program as writers spell them. They declare the same interpolants under the
/// same names in the same order.
class StagePair
{
public:
    /// @param program in which CheckCode and CheckTargets find nothing wrong; must outlive the
    ///        object
    /// @param code of the program, from CheckCode; must outlive the object
    /// @throws std::logic_error if there is something wrong
    StagePair(const CgProgram& program, const ProgramCode& code);

    const Languages::StageProgram& StageOf(ProgramStage stage) const
    {
        return _stages[static_cast<std::size_t>(stage)];
    }

    /// Those of the program, and then what else the environment declares.
    const std::vector<ProgramParameter>& Parameters() const { return _parameters; }

    std::vector<UniformBlock> DescribeBlocks() const { return _blocks->Describe(_reflected); }
    StageInterface DescribeInterface(ProgramStage stage) const;

    /// Names by parameter, from those by variable.
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
    std::unordered_map<const Cg::Variable*, std::size_t> _byVariable; ///< parameters
    std::vector<std::string> _names;                                  ///< wanted, by parameter
    std::vector<std::string> _reflected;                              ///< by parameter
    std::optional<UniformBlocks> _blocks;
    std::unordered_map<int, std::string> _interpolants; ///< names by location
};

} // namespace Mox::Host
