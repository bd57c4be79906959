#pragma once

#include "mox/languages/StageProgram.h"
#include "mox/program/ProgramCode.h"
#include "mox/targets/StageInterface.h"

#include <array>
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

    StageInterface DescribeInterface(ProgramStage stage) const;

    /// Names by parameter, from those by variable.
    std::vector<std::string>
    NamesOfParameters(const std::vector<std::pair<const Cg::Variable*, std::string>>& names) const;

private:
    void GiveNames();
    void Describe(ProgramStage stage);
    void DescribeUniforms(ProgramStage stage, Languages::StageProgram& described) const;
    std::string NameOfInterpolant(int location) const;
    std::size_t ParameterOf(const Cg::Variable& variable) const;
    const ShaderType& TypeOf(const Cg::Variable& variable) const;

    const CgProgram& _program;
    const ProgramCode& _code;
    std::array<Languages::StageProgram, programStageCount> _stages;
    std::unordered_map<std::string_view, std::size_t> _parameters; ///< by name in Cg
    std::vector<std::string> _names;                               ///< wanted, by parameter
    std::vector<std::string> _reflected;                           ///< by parameter
    std::unordered_map<int, std::string> _interpolants;            ///< names by location
};

} // namespace Mox::Host
