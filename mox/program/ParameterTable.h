#pragma once

#include "mox/host/Problem.h"
#include "mox/program/CgNames.h"
#include "mox/program/ProgramPlan.h"
#include "mox/program/StageChoice.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Mox::Host {

/// The parameters of a pair of programs: those of one owner, kind and name are one, where the owner
/// is the material or the environment. Gives them their Cg names and registers.
class ParameterTable
{
public:
    /// @param problems takes a name with two types, a binding with the name of an environment
    /// value,
    ///        two values in one register, and more samplers, streams or constants than there are
    ///        registers for
    ParameterTable(const ProgramGraph& graph, const StageChoice& stages, CgNames& names,
                   ProblemList& problems);

    const std::vector<ProgramParameter>& Parameters() const { return _parameters; }

    /// The parameter that a node of the program stands for, as index.
    std::size_t IndexOf(std::size_t node) const { return _indices.at(node); }

private:
    void Collect(const ProgramGraph& graph, const StageChoice& stages, ProblemList& problems);
    void WarnOfEnvironmentNames(ProblemList& problems) const;
    void GiveNames(CgNames& names);
    void GiveRegisters(const ProgramGraph& graph, ProblemList& problems);

    std::vector<ProgramParameter> _parameters;
    std::map<std::size_t, std::size_t> _indices; ///< from a node of the program
};

} // namespace Mox::Host
